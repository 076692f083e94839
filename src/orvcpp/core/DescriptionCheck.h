// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace orv {

/// Most bytes of a GenICam description, unpacked; those of cameras have up to 5 MB.
constexpr std::uint64_t largestDescription = 16 * 1024 * 1024;
/// Most bytes of a register in a description.
constexpr std::int64_t largestRegister = 16 * 1024 * 1024;

/// What in a GenICam description would end or stall the library that evaluates it: a value that
/// depends on itself, a long chain of nodes, a value that takes too many evaluations, a number
/// in a register of absurd size, declarations of entities, broken XML. Empty when there is nothing.
/// Names the node, on one line. Takes 0.2 s for 10^5 nodes; no recursion. Reentrant.
std::string descriptionFault(const char* bytes, std::size_t size);

/// A text of a camera for one line of the log: at most 120 characters, no control characters.
std::string onOneLine(const std::string& text);

} // namespace orv
