// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace host {

/// Asks the system for a table: fills \p buffer of \p size bytes (null and 0 to learn the size) or
/// sets \p size to what it needs. Answers the system's error code.
using TableQuery = std::function<std::uint32_t(void* buffer, std::uint32_t& size)>;

/// Code of a query whose buffer is too small for the table.
constexpr std::uint32_t insufficientBuffer = 122;

/// The bytes of a table, asked for twice: for the size, then for the table; empty when the system
/// does not give it.
std::optional<std::vector<std::byte>> readTable(const TableQuery& query);

} // namespace host
