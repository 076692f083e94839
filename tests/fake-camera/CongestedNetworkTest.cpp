// SPDX-License-Identifier: BSD-3-Clause
// Loss on a slow link, and Auto Set against it. Run by tools/congested-network.
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "features/FeatureController.h"
#include "session/SdkSession.h"
#include "tests/support/FakeCameraProcess.h"
#include "tests/support/HostStalls.h"
#include "tests/support/NetworkState.h"
#include "tests/support/SdkFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <thread>

namespace {

using namespace fakecamera;
using namespace std::chrono_literals;

constexpr std::uint64_t linkBitsPerSecond = 300'000'000;
constexpr double margin = 0.1;

/// Frames of all cameras of an interface in a benchmark.
struct Totals {
    std::uint64_t sent = 0;
    std::uint64_t complete = 0;
    std::uint64_t damaged = 0;
    std::uint64_t lost = 0;
    std::uint64_t fewestComplete = UINT64_MAX;
    /// Packets that the switch dropped.
    long long dropped = 0;
    std::uint64_t stalls = 0;
};

/// Cameras behind one link. Each may send 16 MB/s and has 15.7 MB/s to send, the link carries
/// 37.5 MB/s. The parameter is whether the packet size is adjusted or stays at 1400 bytes.
class CongestedNetwork : public testing::TestWithParam<bool> {
protected:
    void open(std::size_t count, const std::vector<std::string>& options = {}) {
        for (std::size_t i = 1; i <= count; ++i) {
            const std::string number = std::to_string(i);
            std::vector<std::string> all{"--serial", "C" + number, "--frame-rate",
                                         "15",       "--limit",    "16000000"};
            all.insert(all.end(), options.begin(), options.end());
            m_fakes.push_back(
                std::make_unique<FakeCameraProcess>("10.77.0.1" + number, all, "camera" + number));
        }
        m_session = std::make_unique<session::SdkSession>(
            session::CameraSource{QStringLiteral(":genicam")});
        ASSERT_TRUE(m_session->isStarted()) << m_session->error().toStdString();
        m_controller = makeSystemController(m_session->system());
        const std::vector<CameraList> interfaces = m_controller->enumerate();
        const auto all =
            std::find_if(interfaces.begin(), interfaces.end(),
                         [count](const auto& cameras) { return cameras.size() == count; });
        ASSERT_NE(all, interfaces.end());
        m_cameras = *all;
        m_index = static_cast<int>(all - interfaces.begin());
    }

    static std::uint64_t framesSent(const CameraHandler& camera) {
        return static_cast<std::uint64_t>(std::get<std::int64_t>(
            camera.getFeatureController()->getFeatureValue("Camera", "TestFramesSent")));
    }

    Totals benchmark() const {
        Totals totals;
        const HostStalls stalls;
        totals.dropped = -switchDrops();
        // Unsigned: wraps below zero until the counts after the benchmark are added.
        for (const auto& camera : m_cameras)
            totals.sent -= framesSent(*camera);
        m_controller->startBenchmark(m_index, GetParam());
        std::this_thread::sleep_for(3s);
        m_controller->stopBenchmark(m_index);
        for (const auto& camera : m_cameras) {
            const FrameStatistics one = camera->getFrameStatistics();
            totals.sent += framesSent(*camera);
            totals.complete += one.completeFrames;
            totals.fewestComplete = std::min(totals.fewestComplete, one.completeFrames);
            totals.damaged += one.receivedFrames - one.completeFrames;
            totals.lost += static_cast<std::uint64_t>(one.lostFrames);
        }
        totals.dropped += switchDrops();
        totals.stalls = stalls.count();
        return totals;
    }

    static std::string driver(const CameraHandler& camera) {
        return std::get<std::string>(
            camera.getFeatureController()->getFeatureValue("Stream0", "GVSPDriver"));
    }

    static void waitForFrames(const CameraHandler& camera, std::uint64_t count) {
        EXPECT_TRUE(
            sdk::eventually([&] { return camera.getFrameStatistics().receivedFrames >= count; }));
    }

    /// Auto Set, with the rate of the link.
    void divide() {
        const std::string interface = m_cameras.front()->getCameraInfo().interfaceName;
        m_controller->setMaxBandwidth(interface, linkBitsPerSecond);
        m_controller->autoSetInterface(interface, m_index, GetParam(), margin, margin);
    }

    double bandwidth() const {
        double sum = 0;
        for (const auto& camera : m_cameras)
            sum += static_cast<double>(camera->getBandwidth());
        return sum;
    }

    void loseUntilAutoSet() {
        EXPECT_GT(bandwidth() * 8, linkBitsPerSecond);
        const Totals before = benchmark();
        // More than the frames that are on their way at the stop. Frames whose packets are resent
        // in time are late, not damaged or lost.
        EXPECT_LT(before.complete + m_cameras.size(), before.sent);
        EXPECT_GT(before.dropped, 0);

        divide();
        const double usable = static_cast<double>(linkBitsPerSecond) / 8 * (1 - margin);
        EXPECT_LE(bandwidth(), usable);
        EXPECT_GT(bandwidth(), usable * 0.95);

        Totals after = benchmark();
        for (int i = 0; i < 2 && after.stalls > 0 && after.dropped > 0; ++i)
            after = benchmark();
        if (after.stalls == 0) {
            EXPECT_EQ(after.dropped, 0);
        }
        EXPECT_LE(after.damaged, after.stalls * m_cameras.size());
        EXPECT_LE(after.damaged * 4, before.damaged);
        EXPECT_EQ(after.lost, 0U);
        // One frame per camera may be on its way at the stop.
        EXPECT_GE(after.complete + after.damaged + m_cameras.size(), after.sent);
        EXPECT_GE(after.fewestComplete, 15u);
    }

    std::vector<std::unique_ptr<FakeCameraProcess>> m_fakes;
    std::unique_ptr<session::SdkSession> m_session;
    std::shared_ptr<SystemController> m_controller;
    CameraList m_cameras;
    int m_index = -1;
};

TEST_P(CongestedNetwork, losesFramesUntilAutoSetHasDividedItsBandwidth) {
    ASSERT_NO_FATAL_FAILURE(open(4));
    loseUntilAutoSet();
}

/// Their reported frame rates do not depend on the packet delay that Auto Set changes.
TEST_P(CongestedNetwork, losesFramesUntilAutoSetHasDelayedThePacketsOfCamerasWithoutALimit) {
    ASSERT_NO_FATAL_FAILURE(open(4, {"--throughput-limit", "0"}));
    loseUntilAutoSet();
}

TEST_P(CongestedNetwork, aFifthCameraComesAndGoesWhileFourStream) {
    ASSERT_NO_FATAL_FAILURE(open(5));
    const bool mayUseRing = packetSockets() >= 0;
    for (const auto& camera : m_cameras)
        camera->adjustPacketSize(GetParam());
    divide();
    const auto& guest = m_cameras.back();
    const CameraList others(m_cameras.begin(), m_cameras.end() - 1);
    const HostStalls stalls;
    for (const auto& camera : others)
        camera->startAcquisition();
    for (int i = 0; i < 20; ++i) {
        guest->startAcquisition();
        waitForFrames(*guest, 2);
        EXPECT_EQ(packetSockets(), mayUseRing ? 1 : -1) << "one ring for all";
        guest->stopAcquisition();
        EXPECT_EQ(guest->getFrameStatistics().lostFrames, 0);
    }
    for (const auto& camera : others) {
        EXPECT_EQ(driver(*camera), mayUseRing ? "Filter" : "Socket");
        camera->stopAcquisition();
        const FrameStatistics frames = camera->getFrameStatistics();
        EXPECT_EQ(frames.lostFrames, 0);
        EXPECT_LE(frames.incompleteFrames, stalls.count());
        EXPECT_GT(frames.completeFrames, 20U);
    }
    EXPECT_TRUE(sdk::eventually([] { return packetSockets() <= 0; }));
}

INSTANTIATE_TEST_SUITE_P(PacketSize, CongestedNetwork, testing::Values(false, true),
                         [](const auto& test) { return test.param ? "Adjusted" : "Standard"; });

} // namespace
