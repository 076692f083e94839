// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace session {

/// A USB3 Vision camera that this user has no permission to open.
struct ClosedUsbCamera {
    /// Maker, model and serial number, those that the camera tells.
    std::string name;
    /// File by which programs open the camera, as the user sees it: "/dev/bus/usb/002/007".
    std::string file;
};

/// Finds such cameras in the folders /sys and /dev below \p root. Reentrant.
std::vector<ClosedUsbCamera> closedUsbCameras(const std::filesystem::path& root = "/");

/// Warning for a person, with the command that permits access; nothing without cameras.
std::optional<std::string> usbAccessWarning(const std::vector<ClosedUsbCamera>& cameras);

} // namespace session
