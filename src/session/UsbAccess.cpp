// SPDX-License-Identifier: BSD-3-Clause
#include "session/UsbAccess.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace session {

namespace fs = std::filesystem;

namespace {

/// Numbered before the system's own 73-seat-late.rules, which act on the tag. What they match is
/// the control interface, which every USB3 Vision camera has, and which the devices' own class does
/// not tell: many webcams share that.
const char* const permission =
    "echo 'SUBSYSTEM==\"usb\", ENV{ID_USB_INTERFACES}==\"*:ef0500:*\", GROUP=\"video\", "
    "TAG+=\"uaccess\"' | sudo tee /etc/udev/rules.d/70-usb3vision.rules";

std::string lineIn(const fs::path& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

/// Whether a folder such as "2-1:1.0" is the interface by which a USB3 Vision camera is controlled.
bool isControlInterface(const fs::path& folder) {
    return lineIn(folder / "bInterfaceClass") == "ef" &&
           lineIn(folder / "bInterfaceSubClass") == "05" &&
           lineIn(folder / "bInterfaceProtocol") == "00";
}

std::string nameOf(const fs::path& device) {
    std::string name;
    for (const char* const part : {"manufacturer", "product", "serial"}) {
        const std::string text = lineIn(device / part);
        if (!text.empty())
            name += (name.empty() ? "" : " ") + text;
    }
    return name.empty() ? device.filename().string() : name;
}

/// "dev/bus/usb/002/007"
std::string fileOf(const fs::path& device) {
    char file[64];
    std::snprintf(file, sizeof file, "dev/bus/usb/%03d/%03d",
                  std::atoi(lineIn(device / "busnum").c_str()),
                  std::atoi(lineIn(device / "devnum").c_str()));
    return file;
}

/// Asks as the camera library does: by opening for reading and writing.
bool mayOpen(const fs::path& file) {
    return std::fstream(file, std::ios::in | std::ios::out).is_open();
}

} // namespace

std::vector<ClosedUsbCamera> closedUsbCameras(const fs::path& root) {
    const fs::path devices = root / "sys/bus/usb/devices";
    std::vector<ClosedUsbCamera> closed;
    std::error_code error;
    for (fs::directory_iterator entry(devices, error), end; !error && entry != end;
         entry.increment(error)) {
        if (!isControlInterface(entry->path()))
            continue;
        const std::string interface = entry->path().filename().string();
        const fs::path device = devices / interface.substr(0, interface.find(':'));
        const std::string file = fileOf(device);
        if (!mayOpen(root / file))
            closed.push_back({nameOf(device), '/' + file});
    }
    return closed;
}

std::optional<std::string> usbAccessWarning(const std::vector<ClosedUsbCamera>& cameras) {
    if (cameras.empty())
        return std::nullopt;
    std::string list;
    for (const ClosedUsbCamera& camera : cameras)
        list += (list.empty() ? "" : ", ") + camera.name + " (" + camera.file + ')';
    return "USB3 Vision cameras are missing that this user may not open: " + list +
           ". To permit them to who sits at this computer and to the group video: " + permission +
           ", then plug the cameras in again";
}

} // namespace session
