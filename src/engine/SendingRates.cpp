// SPDX-License-Identifier: BSD-3-Clause
#include "engine/SendingRates.h"

#include "engine/CameraHandler.h"

#include <utility>

SendingRates::SendingRates(CameraList cameras)
    : m_cameras(std::move(cameras)), m_streams(m_cameras.size()) {
    for (const auto& camera : m_cameras)
        camera->startAcquisition();
}

SendingRates::~SendingRates() {
    for (const auto& camera : m_cameras) {
        if (camera->isAcquiring())
            camera->stopAcquisition();
    }
}

void SendingRates::sample() {
    for (std::size_t i = 0; i < m_cameras.size(); ++i) {
        if (!m_cameras[i]->isAcquiring())
            continue;
        const FrameStatistics statistics = m_cameras[i]->getFrameStatistics();
        Stream& stream = m_streams[i];
        if (statistics.receivedFrames == 0 || statistics.lastFrameId <= stream.last.frameId)
            continue;
        stream.last = {Clock::now(), statistics.lastFrameId};
        if (!stream.first)
            stream.first = stream.last;
        stream.bytesPerFrame = static_cast<double>(statistics.payloadBytes) /
                               static_cast<double>(statistics.receivedFrames);
    }
}

std::optional<SendingRates::Rate> SendingRates::rate(std::size_t camera) const {
    const Stream& stream = m_streams[camera];
    if (!stream.first || stream.last.frameId == stream.first->frameId)
        return std::nullopt;
    const std::chrono::duration<double> seconds = stream.last.time - stream.first->time;
    const double framesPerSecond =
        static_cast<double>(stream.last.frameId - stream.first->frameId) / seconds.count();
    return Rate{framesPerSecond, framesPerSecond * stream.bytesPerFrame};
}
