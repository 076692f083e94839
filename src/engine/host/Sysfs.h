// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostNetwork.h"

#include <filesystem>
#include <string>

namespace host {

/// First line of a file of sysfs; empty when it cannot be read.
std::string sysfsAttribute(const std::filesystem::path& file);

/// What sysfs tells of a network interface: link speed, MTU, physical address, and its name as
/// alias. An interface without a speed reads -1 or cannot be read: its speed is 0. One that only
/// software carries tells what its driver makes up, often 10,000 Mbit/s: that is its speed.
InterfaceEntry sysfsInterfaceEntry(const std::string& interfaceName,
                                   const std::filesystem::path& sysfs = "/sys");

} // namespace host
