// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace session {

/// A USB3 Vision camera that Linux knows of, but that this user may not open.
struct ClosedUsbCamera {
    /// Maker, model and serial number, as far as the camera tells them.
    std::string name;
    /// File by which programs open the camera, as the user sees it: "/dev/bus/usb/002/007".
    std::string file;
};

/// Looks for such cameras in the folders /sys and /dev below \p root.
std::vector<ClosedUsbCamera> closedUsbCameras(const std::filesystem::path& root = "/");

/// What to tell a person who misses these cameras, with the command that permits them; nothing
/// where there are none.
std::optional<std::string> usbAccessWarning(const std::vector<ClosedUsbCamera>& cameras);

} // namespace session
