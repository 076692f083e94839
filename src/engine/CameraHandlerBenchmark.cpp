// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraHandler.h"

#include "engine/FrameObserver.h"
#include "engine/GigEStream.h"
#include "logging/Log.h"
#include "sdk/OrvCameraWrapper.h"

namespace {

constexpr int frameBuffers = 5;

} // namespace

void CameraHandler::startAcquisition() {
    checkDriver();
    if (isTriggered())
        logInfo(displayName() + " is configured for triggering.");
    m_observer->reset();
    // The observer counts frames and never looks at their images.
    if (m_stream)
        m_stream->setHeadersOnly(true);
    const OrvErrorType result = m_camera->StartContinuousImageAcquisition(frameBuffers, m_observer);
    if (result == OrvErrorSuccess) {
        m_acquiring = true;
        logInfo(displayName() + ": Acquisition started successfully.");
    } else if (result == OrvErrorAlreadyDone) {
        logInfo(displayName() + ": Acquisition already started.");
    } else {
        logWarning(displayName() + ": Cannot start acquisition.", result);
        restoreImages();
    }
}

/// The next acquisition may be that of a viewer.
void CameraHandler::restoreImages() const {
    if (m_stream)
        m_stream->setHeadersOnly(false);
}

void CameraHandler::stopAcquisition() {
    const OrvErrorType result = m_camera->StopContinuousImageAcquisition();
    if (result == OrvErrorSuccess || result == OrvErrorAlreadyDone)
        m_acquiring = false;
    restoreImages();
    if (result == OrvErrorSuccess) {
        logInfo(displayName() + ": Acquisition stopped successfully.");
        const FrameStatistics statistics = m_observer->statistics();
        logInfo(displayName() + ": Lost frames: " + std::to_string(statistics.lostFrames) +
                ", Incomplete frames: " + std::to_string(statistics.incompleteFrames));
    } else if (result == OrvErrorAlreadyDone) {
        logInfo(displayName() + ": Acquisition already stopped.");
    } else {
        logWarning(displayName() + ": Cannot stop acquisition.", result);
    }
}
