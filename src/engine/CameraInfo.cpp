// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraInfo.h"

std::string cameraDisplayText(const CameraInfo& info) {
    const std::string text = info.modelName + "-" + info.serialNumber + " (" + info.cameraId + ")";
    const bool hasPort =
        info.transportLayerType == OrvTransportLayerTypeU3V && !info.portPath.empty();
    return hasPort ? info.portPath + ": " + text : text;
}
