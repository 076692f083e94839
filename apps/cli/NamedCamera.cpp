// SPDX-License-Identifier: BSD-3-Clause
#include "cli/NamedCamera.h"

#include "cli/Cameras.h"
#include "cli/Failure.h"
#include "cli/NameChoice.h"
#include "engine/CameraHandler.h"
#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvSystemWrapper.h"

namespace cli {

namespace {

/// A CameraHandler, too, reads them before it opens the camera.
Names namesBeforeOpening(const OrvCameraWrapper& camera) {
    std::string id;
    std::string name;
    std::string serialNumber;
    camera.GetID(id);
    camera.GetName(name);
    camera.GetSerialNumber(serialNumber);
    return cameraNames(id, name, serialNumber);
}

std::shared_ptr<CameraHandler> openNamed(OrvSystemWrapper& system, const QString& wanted) {
    const auto cameras = managedCameras(system);
    QVector<Names> names;
    for (const auto& camera : cameras)
        names.append(namesBeforeOpening(*camera));
    return system.CreateCameraHandler(
        cameras[chooseByName(QStringLiteral("camera"), names, wanted)]);
}

} // namespace

NamedCamera::NamedCamera(const session::CameraSource& source, const QString& wanted)
    : m_session(source) {
    if (!m_session.isStarted())
        throw Failure(m_session.error());
    OrvSystemWrapper system(m_session.system());
    m_camera = openNamed(system, wanted);
    requireOpened(*m_camera);
}

QString NamedCamera::id() const {
    return cameraId(*m_camera);
}

FeatureController& NamedCamera::features() const {
    return *m_camera->getFeatureController();
}

} // namespace cli
