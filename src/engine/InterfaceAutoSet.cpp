// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceAutoSet.h"

#include "engine/CameraHandler.h"
#include "engine/Truncation.h"
#include "features/FeatureValue.h"
#include "logging/Log.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

template <typename Bytes> std::string megabytes(Bytes bytes) {
    return toText(static_cast<double>(bytes) / 1e6) + " MB";
}

std::string nameOf(const CameraHandler& camera) {
    return cameraDisplayText(camera.getCameraInfo());
}

} // namespace

InterfaceAutoSet::InterfaceAutoSet(std::string interfaceId, std::int64_t available,
                                   double cameraSafetyMargin)
    : m_interfaceId(std::move(interfaceId)), m_available(available),
      m_cameraSafetyMargin(cameraSafetyMargin) {}

void InterfaceAutoSet::run(const CameraList& cameras, bool adjustPacketSize) {
    logInfo(m_interfaceId +
            ": Interface bandwidth left after applying safety margin: " + megabytes(m_available));
    const CameraList waiting = freeCameras(cameras);
    if (m_available < 0) {
        m_available = 0;
        logInfo(m_interfaceId +
                ": No bandwidth left on the interface - all used by locked camera(s).");
    }
    if (waiting.empty())
        return;
    const std::uint64_t share = static_cast<std::uint64_t>(m_available) / waiting.size();
    logInfo(m_interfaceId + ": Default bandwidth for single camera: " + megabytes(share));
    for (const auto& camera : waiting) {
        camera->adjustPacketSize(adjustPacketSize);
        serve(camera, share);
    }
    serveQueue(m_overShare, m_triggered.size());
    serveQueue(m_triggered, 0);
}

void InterfaceAutoSet::take(std::int64_t bytesPerSecond) {
    // Avoids an overflow, whatever a camera reports.
    constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
    const std::int64_t taken = std::max<std::int64_t>(bytesPerSecond, 0);
    m_available = std::max(m_available, lowest + taken) - taken;
}

CameraList InterfaceAutoSet::freeCameras(const CameraList& cameras) {
    CameraList result;
    for (const auto& camera : cameras) {
        if (!camera->isOpened())
            continue;
        if (camera->isLocked())
            take(camera->getBandwidth());
        else
            result.push_back(camera);
    }
    return result;
}

void InterfaceAutoSet::serve(const std::shared_ptr<CameraHandler>& camera, std::uint64_t share) {
    const auto need = static_cast<double>(camera->autoSet(m_cameraSafetyMargin));
    const std::int64_t requirement =
        std::max<std::int64_t>(truncated(need * m_cameraSafetyMargin + need), 0);
    if (camera->isTriggered()) {
        m_triggered.push_back({camera, requirement});
        return;
    }
    const auto requested = static_cast<std::uint64_t>(requirement);
    logInfo(nameOf(*camera) + ": Bandwidth (with safety margin) needed: " + megabytes(requirement));
    if (requested >= share) {
        logInfo(nameOf(*camera) + ": Bandwidth needed (" + megabytes(requirement) +
                ") is more than default bandwidth: " + megabytes(share) + ".");
        m_overShare.push_back({camera, requirement});
        return;
    }
    const std::int64_t actual = camera->setBandwidth(requested, requested);
    take(actual);
    if (camera->getAutosetStatus() == AutosetStatus::RequestedReached)
        logInfo(nameOf(*camera) + ": Enough bandwidth (" + megabytes(actual) + ") allocated.");
}

void InterfaceAutoSet::serveQueue(std::deque<Waiting>& queue, std::size_t waitingBehind) {
    for (; !queue.empty(); queue.pop_front()) {
        const auto& [camera, requirement] = queue.front();
        const auto requested = static_cast<std::uint64_t>(requirement);
        // A negative m_available gives a meaningless share here, which is not used below.
        const std::uint64_t share =
            static_cast<std::uint64_t>(m_available) / (queue.size() + waitingBehind);
        logInfo(m_interfaceId + ": new default bandwidth for single camera: " + megabytes(share));
        if (m_available > 0) {
            take(camera->setBandwidth(share, requested));
        } else {
            camera->setBandwidth(0, requested);
            logWarning(m_interfaceId +
                       ": No bandwidth left. Minimum neededBandwidthWithMargin set for camera: " +
                       nameOf(*camera));
        }
    }
}
