// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "logging/MessageText.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace session {

/// A USB3 Vision camera at this host.
struct Usb3VisionCamera {
    /// Maker, model and serial number, those that the camera tells.
    std::string name;
    /// File by which programs open the camera, as the user sees it: "/dev/bus/usb/002/007".
    std::string file;
    /// Bits per second of its link; 0 when it is not known.
    std::int64_t linkSpeed = 0;
    /// Key of its host controller; see platform::UsbDevice.
    std::string controller;
    /// Number of its bus.
    std::int64_t bus = 0;
};

/// A camera, and whether this user has the permission to open it.
struct UsbCameraAccess : Usb3VisionCamera {
    bool mayBeOpened = false;
};

/// Finds all of them in the folder /sys below \p root. Opens no file, which would wake a camera
/// that is suspended. Reentrant.
std::vector<Usb3VisionCamera> pluggedUsbCameras(const std::filesystem::path& root = "/");

/// Tries to open the file of each in the folder /dev below \p root, but no camera. Reentrant.
std::vector<UsbCameraAccess> tryUsbCameras(const std::filesystem::path& root = "/");

/// Those of them that this user has no permission to open. Reentrant.
std::vector<Usb3VisionCamera> closedUsbCameras(const std::filesystem::path& root = "/");

/// Warning for a person, with the command that permits access; nothing without cameras.
std::optional<MessageText> usbAccessWarning(const std::vector<Usb3VisionCamera>& cameras);

} // namespace session
