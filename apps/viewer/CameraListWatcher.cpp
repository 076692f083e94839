// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/CameraListWatcher.h"

namespace viewer {

void CameraListWatcher::CameraListChanged(const std::shared_ptr<OrvCPP::Camera>& /*camera*/,
                                          OrvUpdateTriggerType /*reason*/) {
    if (!m_isAnnounced.exchange(true))
        emit changed();
}

void CameraListWatcher::acknowledge() {
    m_isAnnounced = false;
}

} // namespace viewer
