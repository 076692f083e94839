// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraInfo.h"
#include "session/SdkSession.h"

#include <QJsonArray>

#include <memory>
#include <string>
#include <vector>

class CameraHandler;
class OrvCameraWrapper;

namespace cli {

/// Starts the camera SDK and reads the names of cameras and of their interfaces. Opens a camera
/// only when it is asked to: each takes time to open, and another program may be about to use it.
/// Throws a Failure when the SDK cannot be started. Bound to one thread.
class CameraNames {
public:
    explicit CameraNames(const session::CameraSource& source);

    /// "id", "name" and "cameras" of each interface, ordered by name. A camera has "id", "name",
    /// "model" and "serialNumber".
    QJsonArray interfaces() const;
    /// The cameras that are present now.
    std::vector<CameraInfo> cameras() const;
    /// Opens the present camera of this ID; null when there is none any more. Whether it could be
    /// opened, the handler tells.
    std::shared_ptr<CameraHandler> open(const std::string& cameraId) const;
    bool isSimulated() const { return m_session.isSimulated(); }

private:
    session::SdkSession m_session;
};

/// Names and IDs of a camera and of its interface, read without opening the camera. A CameraHandler
/// reads the same ones.
CameraInfo infoBeforeOpening(const OrvCameraWrapper& camera);

} // namespace cli
