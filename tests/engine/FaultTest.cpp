// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FaultyCameras.h"
#include "tests/support/SdkFixture.h"

namespace {

class Faults : public testing::Test {
protected:
    /// Cameras that have delivered frames.
    static int streaming(const std::vector<CameraList>& interfaces) {
        int count = 0;
        for (const CameraList& cameras : interfaces) {
            for (const auto& camera : cameras)
                count += camera->getFrameStatistics().completeFrames > 0 ? 1 : 0;
        }
        return count;
    }

    /// Finds the cameras and runs a short benchmark on all interfaces. Returns the calls made,
    /// without those that close the cameras.
    std::uint64_t benchmark(std::uint64_t failingCall) {
        std::shared_ptr<SystemController> controller;
        std::vector<CameraList> interfaces;
        const auto flow = [&] {
            controller = makeSystemController(m_cameras.system);
            interfaces = controller->enumerate();
            const int count = static_cast<int>(interfaces.size());
            for (int i = 0; i < count; ++i)
                controller->startBenchmark(i, true);
            const int wanted = FaultyCameras::count - (failingCall == 0 ? 0 : 1);
            const bool listFailed = interfaces.empty() && failingCall > 0 &&
                                    failingCall <= FaultyCameras::callsThatList;
            EXPECT_TRUE(listFailed ||
                        sdk::eventually([&] { return streaming(interfaces) >= wanted; }))
                << "failing call " << failingCall;
            for (int i = 0; i < count; ++i)
                controller->stopBenchmark(i);
        };
        return m_cameras.callsOf(flow, failingCall);
    }

    CapturedLog m_log;
    FaultyCameras m_cameras;
};

TEST_F(Faults, anyFailingCallLeavesTheOtherCamerasWorking) {
    benchmark(0);
    EXPECT_GT(FaultyCameras::failEachCall([this](auto call) { return benchmark(call); }), 100U);
    benchmark(0); // no fault lasts
}

TEST_F(Faults, callsPerEnumeratedCameraAreFew) {
    std::vector<std::uint64_t> calls;
    for (const char* unplugged : {"none", "DEV_G002", "DEV_G001", "DEV_U"}) {
        m_cameras.simulation.SetCameraPlugged(unplugged, false);
        calls.push_back(
            m_cameras.callsOf([this] { makeSystemController(m_cameras.system)->enumerate(); }));
    }
    EXPECT_EQ(calls[0] - calls[1], calls[1] - calls[2]);
    // Opening, reading and closing; each text and list is asked for twice.
    EXPECT_LE(calls[1] - calls[2], 48U);
    EXPECT_LE(calls[2] - calls[3], 65U);
}

TEST_F(Faults, callsOfAutoSetAreFew) {
    const auto controller = makeSystemController(m_cameras.system);
    const auto interfaces = controller->enumerate();
    ASSERT_EQ(interfaces.size(), 2U);
    for (const CameraList& cameras : interfaces) {
        const auto autoSet = [&](double margin) {
            return m_cameras.callsOf([&] { cameras.front()->autoSet(margin); });
        };
        // The first run reads the descriptions of the features, each once.
        EXPECT_LE(autoSet(0.05), 66U);
        m_log.clear();
        const std::uint64_t searching = autoSet(0.05);
        EXPECT_TRUE(m_log.has("Debug:Autoset completed in 10 steps."));
        EXPECT_LE(searching, 39U);
        // With a margin that no camera can meet, the search is skipped: the calculated bandwidth
        // and ten steps, each a write and a read of the frame rate.
        EXPECT_EQ(searching - autoSet(1e6), 2U * (1 + 10));
    }
    // Two cameras: first the features of one of them are not read yet, then those of both are.
    for (const std::uint64_t most : {139, 2 * 52})
        EXPECT_LE(m_cameras.callsOf([&] { controller->autoSetInterface("", 0, false, 0.1, 0.05); }),
                  most);
}

} // namespace
