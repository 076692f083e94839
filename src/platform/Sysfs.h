// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Reads Linux's /sys and /proc. All functions are reentrant.
namespace platform {

/// First line of \p file, without blanks at its end; empty when it cannot be read.
std::string sysfsAttribute(const std::filesystem::path& file);

/// The first line of \p file as a decimal number; nothing when it is not exactly a number of 0 or
/// more.
std::optional<std::uint64_t> sysfsNumber(const std::filesystem::path& file);

/// Before the name of each lower adapter in the folder of an adapter: "lower_eth0".
constexpr const char* lowerAdapterPrefix = "lower_";

/// The adapters that send and receive for one that has no cable of its own: a VLAN, a bond, a
/// bridge. \p folder is the adapter's, "/sys/class/net/br0". Sorted; empty for an adapter with a
/// cable.
std::vector<std::string> lowerAdapters(const std::filesystem::path& folder);

} // namespace platform
