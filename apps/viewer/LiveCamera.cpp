// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/LiveCamera.h"

#include "OrvCPP/Camera.h"
#include "viewer/FrameImage.h"
#include "viewer/FrameMailbox.h"

namespace viewer {

namespace {

/// One frame on the screen, one waiting in the mailbox, the others for the camera to fill.
constexpr int frameCount = 5;

} // namespace

LiveCamera::LiveCamera(QObject* parent) : QObject(parent) {}

LiveCamera::~LiveCamera() {
    stop();
}

OrvErrorType LiveCamera::start(const std::shared_ptr<OrvCPP::Camera>& camera,
                               OrvTransportLayerType type) {
    stop();
    const OrvErrorType opened = camera->Open(OrvAccessModeFull);
    if (opened != OrvErrorSuccess)
        return opened;
    const auto giveBack = [weak = std::weak_ptr(camera)](const auto& frame) {
        if (const auto owner = weak.lock())
            owner->QueueFrame(frame);
    };
    const auto announce = [this] {
        QMetaObject::invokeMethod(this, &LiveCamera::showLatest, Qt::QueuedConnection);
    };
    m_mailbox = std::make_shared<FrameMailbox>(firstFrameIdOf(type), giveBack, announce);
    const OrvErrorType started = camera->StartContinuousImageAcquisition(
        frameCount, m_mailbox, OrvCPP::FrameAllocationMode::AnnounceFrame);
    if (started != OrvErrorSuccess) {
        m_mailbox.reset();
        camera->Close();
        return started;
    }
    m_camera = camera;
    return OrvErrorSuccess;
}

void LiveCamera::stop() {
    if (m_camera) {
        // Both calls fail for a disconnected camera; there is nothing else to release.
        m_camera->StopContinuousImageAcquisition();
        m_camera->Close();
        m_mailbox.reset();
        m_camera.reset();
    }
}

bool LiveCamera::isRunning() const {
    return m_camera != nullptr;
}

FrameStatistics LiveCamera::frameStatistics() const {
    return m_mailbox ? m_mailbox->statistics() : FrameStatistics();
}

void LiveCamera::showLatest() {
    // The invocation may have waited in the event loop while the camera was stopped or changed.
    const auto frame = m_mailbox ? m_mailbox->take() : nullptr;
    if (!frame)
        return;
    OrvFrameStatusType status = OrvFrameStatusInvalid;
    frame->GetReceiveStatus(status);
    const RawImage raw = rawImage(*frame);
    const QImage image = status == OrvFrameStatusComplete ? toImage(raw) : QImage();
    m_camera->QueueFrame(frame);

    if (!image.isNull())
        emit imageReady(image, pixelFormatName(raw.format));
    else if (status == OrvFrameStatusComplete)
        emit imageNotShown(pixelFormatName(raw.format));
}

} // namespace viewer
