// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/host/HostNetwork.h"

#include <filesystem>
#include <string>

namespace host {

/// What sysfs tells of a network interface: link speed, physical address, and its name as alias.
/// An interface without a speed reads -1 or cannot be read: its speed is 0.
InterfaceEntry sysfsInterfaceEntry(const std::string& interfaceName,
                                   const std::filesystem::path& sysfs = "/sys");

} // namespace host
