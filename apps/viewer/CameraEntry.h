// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <QString>

#include <memory>
#include <vector>

namespace OrvCPP {
class Camera;
class OrvSystem;
} // namespace OrvCPP

namespace viewer {

/// What a camera can be used for at the moment.
enum class CameraAccess {
    /// It can be opened.
    Available,
    /// Another application holds it, or it is not permitted for another reason.
    InUse,
    /// It was found, and does not answer: its cable was pulled, or it is in another network.
    NoAnswer,
    /// This viewer shows its image.
    Live
};

/// One line of the camera list.
struct CameraEntry {
    /// Unique among all cameras.
    QString id;
    /// Followed by the serial number or ID when several cameras have the same name.
    QString name;
    QString model;
    QString serialNumber;
    QString interfaceName;
    QString interfaceId;
    OrvTransportLayerType type = OrvTransportLayerTypeUnknown;
    CameraAccess access = CameraAccess::Available;
    std::shared_ptr<OrvCPP::Camera> camera;
};

/// The cameras that the SDK finds now, in its order.
std::vector<CameraEntry> findCameras(OrvCPP::OrvSystem& system);

} // namespace viewer
