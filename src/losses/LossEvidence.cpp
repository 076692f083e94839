// SPDX-License-Identifier: BSD-3-Clause
#include "losses/LossEvidence.h"

#include "features/FeatureController.h"
#include "features/OptionalFeatures.h"
#include "losses/CameraAdapter.h"
#include "platform/HostCommands.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace {

using Count = CameraEvidence::Count;

constexpr char packetsReceivedFeature[] = "GevStreamSeenPacketCount";

/// Between two readings at the end, until this program has read what the adapter received.
constexpr std::chrono::milliseconds drainStep{2};
/// Packets wait for this program while readings fall within this time. A stream without images
/// reads its packets every 20 ms: the time has two of these readings.
constexpr std::chrono::milliseconds drainPause{50};

/// A feature of the stream, and where its value goes.
struct StreamFeature {
    const char* feature;
    Count CameraEvidence::*count;
};

/// Since the stream began.
constexpr StreamFeature statistics[] = {
    {"StreamLostFrameCount", &CameraEvidence::streamFramesLost},
    {"StreamLostFrameGapCount", &CameraEvidence::gaps},
    {"StreamHollowFrameCount", &CameraEvidence::framesHollow},
    {"StreamUnderrunFrameCount", &CameraEvidence::framesWithoutBuffer},
    {packetsReceivedFeature, &CameraEvidence::packetsReceived},
    {"GevStreamLostPacketCount", &CameraEvidence::packetsMissing},
    {"GevStreamResendPacketCount", &CameraEvidence::packetsResent},
    {"GevStreamDuplicatePacketCount", &CameraEvidence::packetsDuplicate},
    {"GevStreamLatePacketCount", &CameraEvidence::packetsLate},
    {"GevStreamUnavailablePacketCount", &CameraEvidence::packetsUnavailable},
    {"GevStreamDroppedPacketCount", &CameraEvidence::packetsDropped},
};

constexpr StreamFeature settings[] = {
    {"GVSPPacketSize", &CameraEvidence::packetSize},
    {"GVSPHostReceiveBufferSize", &CameraEvidence::receiveBuffer},
};

/// Name of the network adapter that the cameras share; empty where it is not known.
std::string adapterOfAll(const std::vector<ObservedCamera>& cameras) {
    for (const ObservedCamera& camera : cameras)
        if (std::string adapter = adapterOf(*camera.features); !adapter.empty())
            return adapter;
    return {};
}

template <std::size_t size>
void read(CameraEvidence& evidence, const ObservedCamera& camera,
          const StreamFeature (&features)[size]) {
    for (const StreamFeature& each : features)
        evidence.*each.count = readCount(*camera.features, firstStreamModule, each.feature);
}

/// Unknown where one of both is, and when the count was begun anew.
Count movement(const Count& before, const Count& now) {
    return before && now && *before <= *now ? Count(*now - *before) : std::nullopt;
}

void countFrames(CameraEvidence& evidence, const FrameStatistics& before,
                 const FrameStatistics& now) {
    evidence.framesReceived = now.receivedFrames - before.receivedFrames;
    evidence.framesIncomplete = now.incompleteFrames - before.incompleteFrames;
    // Negative only while the camera numbers frames in another order.
    const std::int64_t lost = now.lostFrames - before.lostFrames;
    evidence.framesLost = lost > 0 ? static_cast<std::uint64_t>(lost) : 0;
}

void describe(CameraEvidence& evidence, const ObservedCamera& camera) {
    evidence.id = camera.id;
    evidence.isUsb = camera.isUsb;
    evidence.isTriggered = isSilent(evidence) && camera.isTriggered && camera.isTriggered();
    read(evidence, camera, statistics);
    read(evidence, camera, settings);
    if (const auto driver = readIfPresent(*camera.features, firstStreamModule, "GVSPDriver"))
        if (const auto name = textOf(*driver))
            evidence.usesRing = *name == "Filter";
    if (evidence.isUsb)
        evidence.usbSpeed =
            readCount(*camera.features, localDeviceModule, "DeviceConnectionSpeed").value_or(0);
}

} // namespace

LossEvidence::LossEvidence(std::string name, std::vector<ObservedCamera> cameras,
                           bool areSimulated) {
    m_evidence.name = std::move(name);
    m_evidence.isSimulated = areSimulated;
    m_evidence.program = platform::programFile();
    if (!areSimulated)
        m_before = platform::readNetworkCounters(adapterOfAll(cameras));
    for (ObservedCamera& camera : cameras)
        m_cameras.push_back({std::move(camera), {}, std::nullopt});
}

void LossEvidence::noteStart(std::chrono::milliseconds longestDrain) {
    m_surplusAtStart = leastSurplus(std::nullopt, longestDrain);
}

void LossEvidence::startFromNow() {
    for (Camera& camera : m_cameras) {
        camera.framesBefore = camera.observed.frames().value_or(FrameStatistics());
        read(camera.streamBefore.emplace(), camera.observed, statistics);
    }
    noteStart(std::chrono::milliseconds(0));
}

bool LossEvidence::hasBadFrames() const {
    return std::any_of(m_cameras.begin(), m_cameras.end(), [](const Camera& camera) {
        const auto frames = camera.observed.frames();
        CameraEvidence evidence;
        if (frames)
            countFrames(evidence, camera.framesBefore, *frames);
        return framesBad(evidence) > 0;
    });
}

std::optional<std::int64_t> LossEvidence::surplusNow() const {
    if (m_evidence.isSimulated || m_before.adapter.empty())
        return std::nullopt;
    std::uint64_t streams = 0;
    for (const Camera& camera : m_cameras) {
        if (!camera.observed.frames())
            continue;
        const Count received =
            readCount(*camera.observed.features, firstStreamModule, packetsReceivedFeature);
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
std::optional<std::int64_t>
LossEvidence::leastSurplus(std::optional<std::int64_t> expected,
                           std::chrono::milliseconds longestDrain) const {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + longestDrain;
    auto pauseEnd = Clock::now() + drainPause;
    auto least = surplusNow();
    while (least && (!expected || *least > *expected) && Clock::now() < std::min(end, pauseEnd)) {
        std::this_thread::sleep_for(drainStep);
        const auto surplus = surplusNow();
        if (!surplus)
            return std::nullopt;
        if (*surplus < *least) {
            least = surplus;
            pauseEnd = Clock::now() + drainPause;
        }
    }
    return least;
}

void LossEvidence::noteEnd(std::chrono::milliseconds longestDrain) {
    const auto surplus =
        m_surplusAtStart ? leastSurplus(m_surplusAtStart, longestDrain) : std::nullopt;
    m_evidence.surplus =
        surplus && m_surplusAtStart ? std::optional(*surplus - *m_surplusAtStart) : std::nullopt;
    if (!m_evidence.isSimulated)
        m_evidence.network = difference(m_before, platform::readNetworkCounters(m_before.adapter));
    m_evidence.cameras.clear();
    for (const Camera& camera : m_cameras) {
        const auto frames = camera.observed.frames();
        if (!frames)
            continue;
        CameraEvidence& evidence = m_evidence.cameras.emplace_back();
        countFrames(evidence, camera.framesBefore, *frames);
        describe(evidence, camera.observed);
        if (camera.streamBefore)
            for (const StreamFeature& each : statistics)
                evidence.*each.count =
                    movement(*camera.streamBefore.*each.count, evidence.*each.count);
        if (!m_evidence.mtu)
            m_evidence.mtu =
                readCount(*camera.observed.features, interfaceModule, "GevInterfaceMTU");
    }
}
