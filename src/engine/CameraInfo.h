// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <string>

/// What is shown of a camera and of what it hangs on. Texts that could not be read are empty.
struct CameraInfo {
    std::string cameraName;
    std::string modelName;
    std::string cameraId;
    std::string serialNumber;
    /// Name that the SDK gives the interface; the key of an interface throughout the system. A USB
    /// interface whose name cannot be read shows its bus instead ("USB bus 2").
    std::string interfaceName;
    std::string interfaceId;
    std::string transportLayerName;
    std::string transportLayerId;
    std::string transportLayerPath;
    std::string transportLayerVendor;
    /// "Port 3" for a USB camera, where it is known.
    std::string portPath;
    OrvTransportLayerType transportLayerType = OrvTransportLayerTypeUnknown;
};

/// "Model-Serial (ID)", for a USB camera with its port path and ": " in front.
std::string cameraDisplayText(const CameraInfo& info);
