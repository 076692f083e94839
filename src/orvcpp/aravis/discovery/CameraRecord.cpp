// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/discovery/CameraRecord.h"

#include <cctype>

namespace orv::aravis {

namespace {

/// Only digits and upper-case letters, so that it needs no quoting in a shell.
std::string plain(const std::string& text) {
    std::string result;
    for (const char letter : text) {
        const auto code = static_cast<unsigned char>(letter);
        if (std::isalnum(code))
            result += static_cast<char>(std::toupper(code));
    }
    return result;
}

} // namespace

std::string CameraRecord::key() const {
    const char* protocol = type == OrvTransportLayerTypeGEV ? "GEV:" : "U3V:";
    return protocol + hardwareId + '@' + place;
}

bool CameraRecord::isSameDevice(const CameraRecord& other) const {
    const bool isUnique = type == OrvTransportLayerTypeGEV ? platform::macNumber(hardwareId) != 0
                                                           : hardwareId != serialNumber;
    return isUnique && type == other.type && hardwareId == other.hardwareId;
}

std::string CameraRecord::id() const {
    return "DEV_" + plain(hardwareId);
}

std::string CameraRecord::interfaceId() const {
    if (type == OrvTransportLayerTypeGEV)
        return adapter ? adapter->name : "unreachable";
    return usb ? usb->controller : "unknown";
}

} // namespace orv::aravis
