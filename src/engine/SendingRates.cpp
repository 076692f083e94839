// SPDX-License-Identifier: BSD-3-Clause
#include "engine/SendingRates.h"

#include "engine/CameraHandler.h"

#include <chrono>
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
        if (statistics.receivedFrames == 0 || statistics.lastFrameId <= stream.lastFrameId)
            continue;
        stream.lastFrameId = statistics.lastFrameId;
        stream.period.add(statistics.lastFrameId, std::chrono::steady_clock::now());
        stream.bytesPerFrame = static_cast<double>(statistics.payloadBytes) /
                               static_cast<double>(statistics.receivedFrames);
    }
}

std::optional<SendingRates::Rate> SendingRates::rate(std::size_t camera) const {
    const Stream& stream = m_streams[camera];
    const std::optional<double> period = stream.period.seconds();
    if (!period)
        return std::nullopt;
    return Rate{1 / *period, stream.bytesPerFrame / *period};
}
