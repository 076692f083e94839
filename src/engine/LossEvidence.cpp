// SPDX-License-Identifier: BSD-3-Clause
#include "engine/LossEvidence.h"

#include "engine/CameraHandler.h"
#include "engine/CameraNumbers.h"
#include "features/FeatureController.h"
#include "platform/HostCommands.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace {

using Count = CameraEvidence::Count;

constexpr char packetsReceivedFeature[] = "StatPacketReceived";

/// How long to wait at the end until this program has read what the adapter received.
constexpr std::chrono::milliseconds longestDrain{500};
constexpr std::chrono::milliseconds drainStep{2};

/// A feature of the stream's statistics, and where its value goes.
struct Statistic {
    const char* feature;
    Count CameraEvidence::*count;
};

constexpr Statistic statistics[] = {
    {"StatFrameDropped", &CameraEvidence::streamFramesLost},
    {"StatFrameGap", &CameraEvidence::gaps},
    {"StatFrameHollow", &CameraEvidence::framesHollow},
    {"StatFrameUnderrun", &CameraEvidence::framesWithoutBuffer},
    {packetsReceivedFeature, &CameraEvidence::packetsReceived},
    {"StatPacketMissed", &CameraEvidence::packetsMissing},
    {"StatPacketResent", &CameraEvidence::packetsResent},
    {"StatPacketDuplicate", &CameraEvidence::packetsDuplicate},
    {"StatPacketLate", &CameraEvidence::packetsLate},
    {"StatPacketUnavailable", &CameraEvidence::packetsUnavailable},
    {"StatPacketDropped", &CameraEvidence::packetsDropped},
    {"GVSPPacketSize", &CameraEvidence::packetSize},
    {"GVSPHostReceiveBufferSize", &CameraEvidence::receiveBuffer},
};

} // namespace

LossEvidence::LossEvidence(std::string name, CameraList cameras, bool areSimulated)
    : m_cameras(std::move(cameras)) {
    m_evidence.name = std::move(name);
    m_evidence.isSimulated = areSimulated;
    m_evidence.program = platform::programFile();
    if (!areSimulated)
        m_before = platform::readNetworkCounters(adapterOf(m_cameras));
}

void LossEvidence::noteStart() {
    m_surplusAtStart = surplusNow();
}

std::optional<std::int64_t> LossEvidence::surplusNow() const {
    if (m_evidence.isSimulated || m_before.adapter.empty())
        return std::nullopt;
    std::uint64_t streams = 0;
    for (const auto& camera : m_cameras) {
        if (!camera->isAcquiring())
            continue;
        const Count received = readCount(*camera, firstStreamModule, packetsReceivedFeature);
        if (!received)
            return std::nullopt;
        streams += *received;
    }
    // Directly after the streams, so that few packets come between.
    const auto now = platform::readAdapterCounters(m_before.adapter);
    const auto adapter = now[platform::NetworkCount::AdapterReceived];
    if (!adapter || now.adapterIndex != m_before.adapterIndex)
        return std::nullopt;
    return static_cast<std::int64_t>(*adapter) - static_cast<std::int64_t>(streams);
}

/// Packets that wait for this program count as surplus: the least of several readings has the
/// fewest of them.
std::optional<std::int64_t> LossEvidence::leastSurplus(std::int64_t expected) const {
    const auto end = std::chrono::steady_clock::now() + longestDrain;
    auto least = surplusNow();
    while (least && *least > expected && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(drainStep);
        const auto surplus = surplusNow();
        least = surplus ? std::min(least, surplus) : std::nullopt;
    }
    return least;
}

void LossEvidence::noteEnd() {
    const auto surplus = m_surplusAtStart ? leastSurplus(*m_surplusAtStart) : std::nullopt;
    m_evidence.surplus =
        surplus && m_surplusAtStart ? std::optional(*surplus - *m_surplusAtStart) : std::nullopt;
    if (!m_evidence.isSimulated)
        m_evidence.network = difference(m_before, platform::readNetworkCounters(m_before.adapter));
    m_evidence.cameras.clear();
    for (const auto& camera : m_cameras) {
        if (!camera->isAcquiring())
            continue;
        describe(m_evidence.cameras.emplace_back(), *camera);
        if (!m_evidence.mtu)
            m_evidence.mtu = readCount(*camera, interfaceModule, "GevInterfaceMTU");
    }
}

void LossEvidence::describe(CameraEvidence& evidence, const CameraHandler& camera) const {
    const CameraInfo info = camera.getCameraInfo();
    evidence.id = info.cameraId;
    evidence.isUsb = info.transportLayerType == OrvTransportLayerTypeU3V;
    const FrameStatistics frames = camera.getFrameStatistics();
    evidence.framesReceived = frames.receivedFrames;
    evidence.framesIncomplete = frames.incompleteFrames;
    // Negative only while the camera numbers frames in another order.
    evidence.framesLost = frames.lostFrames > 0 ? static_cast<std::uint64_t>(frames.lostFrames) : 0;
    evidence.isTriggered = isSilent(evidence) && camera.isTriggered();
    for (const Statistic& statistic : statistics)
        evidence.*statistic.count = readCount(camera, firstStreamModule, statistic.feature);
    if (const auto driver = readIfPresent(camera, firstStreamModule, "GVSPDriver"))
        if (const auto name = textOf(*driver))
            evidence.usesRing = *name == "Filter";
    if (evidence.isUsb)
        evidence.usbSpeed =
            readCount(camera, localDeviceModule, "DeviceConnectionSpeed").value_or(0);
}
