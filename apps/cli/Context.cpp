// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Context.h"

#include "cli/CameraNames.h"
#include "cli/Cameras.h"
#include "cli/NamedCamera.h"
#include "cli/platform/Interruption.h"

#include <utility>

namespace cli {

Context::Context(const Arguments& given, Terminal& output, Interruption& ending,
                 session::CameraSource source, bool json)
    : arguments(given), terminal(output), interruption(ending), wantsJson(json),
      m_source(std::move(source)) {}

Context::~Context() = default;

Cameras& Context::openCameras() {
    if (!m_cameras)
        m_cameras = std::make_unique<Cameras>(m_source);
    checkInterruption();
    return *m_cameras;
}

void Context::closeCameras() {
    m_wereSimulated = areCamerasSimulated();
    m_cameras.reset();
    checkInterruption();
}

NamedCamera& Context::openCamera(const QString& wanted) {
    m_camera = std::make_unique<NamedCamera>(m_source, wanted);
    checkInterruption();
    return *m_camera;
}

CameraNames& Context::readNames() {
    m_names = std::make_unique<CameraNames>(m_source);
    checkInterruption();
    return *m_names;
}

bool Context::areCamerasSimulated() const {
    if (m_names)
        return m_names->isSimulated();
    if (m_camera)
        return m_camera->isSimulated();
    return m_cameras ? m_cameras->areSimulated() : m_wereSimulated;
}

void Context::checkInterruption() const {
    if (interruption.isRequested())
        throw Failure(QStringLiteral("Interrupted."));
}

} // namespace cli
