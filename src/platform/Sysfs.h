// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// Files of Linux's /sys and /proc that hold one value each. All functions are reentrant.
namespace platform {

/// First line of \p file, without blanks at its end; empty when it cannot be read.
std::string sysfsAttribute(const std::filesystem::path& file);

/// The first line of \p file as a decimal number; nothing when it is not exactly a number of 0 or
/// more.
std::optional<std::uint64_t> sysfsNumber(const std::filesystem::path& file);

} // namespace platform
