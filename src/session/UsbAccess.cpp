// SPDX-License-Identifier: BSD-3-Clause
#include "session/UsbAccess.h"

#include "platform/HostCommands.h"
#include "platform/UsbDevice.h"

#include <QtGlobal>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <utility>

namespace session {

namespace fs = std::filesystem;

namespace {

bool isUsb3Vision(const platform::UsbDevice& device) {
    const auto classes = platform::usbInterfaceClasses(device.folder);
    return std::find(classes.begin(), classes.end(), platform::usb3VisionControl) != classes.end();
}

std::string nameOf(const platform::UsbDevice& device) {
    std::string name;
    for (const std::string& text : {device.manufacturer, device.product, device.serialNumber})
        if (!text.empty())
            name += (name.empty() ? "" : " ") + text;
    return name.empty() ? device.folder.filename().string() : name;
}

/// "dev/bus/usb/002/007"
std::string fileOf(const platform::UsbDevice& device) {
    char file[64];
    std::snprintf(file, sizeof file, "dev/bus/usb/%03d/%03d", static_cast<int>(device.bus),
                  static_cast<int>(device.number));
    return file;
}

/// Opens for reading and writing, as the camera library does.
bool mayOpen(const fs::path& file) {
    return std::fstream(file, std::ios::in | std::ios::out).is_open();
}

} // namespace

std::vector<Usb3VisionCamera> pluggedUsbCameras(const fs::path& root) {
    std::vector<Usb3VisionCamera> cameras;
    for (const platform::UsbDevice& device : platform::usbDevices(root / "sys")) {
        if (isUsb3Vision(device))
            cameras.push_back({nameOf(device), '/' + fileOf(device), device.linkSpeed,
                               device.controller, device.bus});
    }
    return cameras;
}

std::vector<UsbCameraAccess> tryUsbCameras(const fs::path& root) {
    std::vector<UsbCameraAccess> cameras;
    for (Usb3VisionCamera& camera : pluggedUsbCameras(root)) {
        const bool isPermitted = mayOpen(root / camera.file.substr(1));
        cameras.push_back({std::move(camera), isPermitted});
    }
    return cameras;
}

std::vector<Usb3VisionCamera> closedUsbCameras(const fs::path& root) {
    std::vector<Usb3VisionCamera> cameras;
    for (const UsbCameraAccess& camera : tryUsbCameras(root))
        if (!camera.mayBeOpened)
            cameras.push_back(camera);
    return cameras;
}

std::optional<MessageText> usbAccessWarning(const std::vector<Usb3VisionCamera>& cameras) {
    if (cameras.empty())
        return std::nullopt;
    std::string list;
    for (const Usb3VisionCamera& camera : cameras)
        list += (list.empty() ? "" : ", ") + camera.name + " (" + camera.file + ')';
    return MessageText("StreamingLimits",
                       QT_TRANSLATE_NOOP("StreamingLimits",
                                         "No permission to open these USB3 Vision cameras: %1. To "
                                         "permit them to the user at this computer and to the "
                                         "group video: %2"),
                       {list, platform::usbPermissionCommand()});
}

} // namespace session
