// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <string>

/// Texts shown for a camera, its interface and its transport layer. Empty where not readable.
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
