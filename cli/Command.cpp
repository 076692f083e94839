// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Command.h"

#include "cli/Cameras.h"

#include <utility>

namespace cli {

Context::Context(const Arguments& given, Screen& output, session::CameraSource source, bool json)
    : arguments(given), screen(output), wantsJson(json), m_source(std::move(source)) {}

Context::~Context() = default;

Cameras& Context::openCameras() {
    if (!m_cameras)
        m_cameras = std::make_unique<Cameras>(m_source);
    return *m_cameras;
}

} // namespace cli
