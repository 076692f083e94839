// SPDX-License-Identifier: BSD-3-Clause
#include "cli/NamedCamera.h"

#include "cli/CameraNames.h"
#include "cli/Cameras.h"
#include "cli/Failure.h"
#include "cli/NameChoice.h"
#include "engine/CameraHandler.h"
#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvSystemWrapper.h"

namespace cli {

namespace {

std::shared_ptr<CameraHandler> openNamed(OrvSystemWrapper& system, const QString& wanted) {
    const auto cameras = managedCameras(system);
    QVector<Names> names;
    for (const auto& camera : cameras) {
        const CameraInfo info = infoBeforeOpening(*camera);
        names.append(cameraNames(info.cameraId, info.cameraName, info.serialNumber));
    }
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
