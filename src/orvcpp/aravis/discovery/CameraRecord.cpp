// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/discovery/CameraRecord.h"

#include "gige/DiscoveredCamera.h"

namespace orv::aravis {

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
    return gige::cameraId(hardwareId);
}

std::string CameraRecord::interfaceId() const {
    if (type == OrvTransportLayerTypeGEV)
        return adapter ? adapter->name : "unreachable";
    return usb ? usb->controller : "unknown";
}

} // namespace orv::aravis
