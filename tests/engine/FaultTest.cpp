// SPDX-License-Identifier: BSD-3-Clause
#include "OrvCPP/OrvSystem.h"
#include "OrvSimulation/Simulation.h"
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "tests/support/CapturedLog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace {

constexpr int cameraCount = 3;

class Faults : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(m_simulation, nullptr);
        ASSERT_EQ(m_system.Startup(L"" FAULT_SCENARIO), OrvErrorSuccess);
    }
    void TearDown() override { m_system.Shutdown(); }

    /// Cameras that have delivered frames; waits until \p wanted have, or for too long.
    static int streaming(const std::vector<CameraList>& interfaces, int wanted) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        for (;;) {
            int count = 0;
            for (const CameraList& cameras : interfaces) {
                for (const auto& camera : cameras)
                    count += camera->getFrameStatistics().completeFrames > 0 ? 1 : 0;
            }
            if (count >= wanted || std::chrono::steady_clock::now() > end)
                return count;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    /// Finds the cameras and runs a short benchmark on all interfaces while one call fails.
    /// Answers how many calls were made.
    std::uint64_t run(std::uint64_t failingCall) {
        m_simulation->ResetCalls();
        m_simulation->FailCall(failingCall, OrvErrorInternalFault);
        const auto controller = makeSystemController(m_system);
        const auto interfaces = controller->enumerate();
        const int count = static_cast<int>(interfaces.size());
        for (int i = 0; i < count; ++i)
            controller->startBenchmark(i, true);
        // One call is about one camera, but for those that list them all.
        const int wanted = failingCall == 0 ? cameraCount : cameraCount - 1;
        const bool listFailed = interfaces.empty() && failingCall <= callsThatList;
        if (!listFailed) {
            EXPECT_GE(streaming(interfaces, wanted), wanted) << "failing call " << failingCall;
        }
        for (int i = 0; i < count; ++i)
            controller->stopBenchmark(i);
        const std::uint64_t calls = m_simulation->GetCallCount();
        // Closing the cameras is not part of the run.
        m_simulation->FailCall(0, OrvErrorSuccess);
        return calls;
    }

    /// Calls that a step makes.
    template <class Step> std::uint64_t callsOf(Step step) const {
        m_simulation->ResetCalls();
        step();
        return m_simulation->GetCallCount();
    }

    static constexpr std::uint64_t callsThatList = 2;
    CapturedLog m_log;
    OrvCPP::OrvSystem& m_system = OrvCPP::OrvSystem::GetInstance();
    OrvCPP::ISimulation* m_simulation = dynamic_cast<OrvCPP::ISimulation*>(&m_system);
};

TEST_F(Faults, AnyFailingCallLeavesTheOtherCamerasWorking) {
    run(0);
    std::uint64_t failingCall = 1;
    while (run(failingCall) >= failingCall && !HasFailure())
        ++failingCall;
    EXPECT_GT(failingCall, 100U);
    // Nothing of it lasts.
    run(0);
}

TEST_F(Faults, AnyFailingCallLeavesAutoSetAnEndAndTheOtherCamerasABandwidth) {
    std::uint64_t calls = 0;
    const auto camerasThatWereSet = [&](std::uint64_t failingCall) {
        // Anew each time: what is known of a camera would not be read again, and so never fail.
        const auto controller = makeSystemController(m_system);
        const CameraList cameras = controller->enumerate().at(0);
        m_simulation->ResetCalls();
        m_simulation->FailCall(failingCall, OrvErrorInternalFault);
        controller->autoSetInterface("any", 0, true, 0.1, 0.05);
        calls = m_simulation->GetCallCount();
        m_simulation->FailCall(0, OrvErrorSuccess);
        return std::count_if(cameras.begin(), cameras.end(), [](const auto& camera) {
            return camera->getAutosetStatus() != AutosetStatus::NotSet &&
                   camera->getBandwidth() > 0;
        });
    };
    constexpr std::ptrdiff_t all = 2;
    ASSERT_EQ(camerasThatWereSet(0), all);
    std::uint64_t failingCall = 0;
    do {
        EXPECT_GE(camerasThatWereSet(++failingCall), all - 1) << "failing call " << failingCall;
    } while (calls >= failingCall && !HasFailure());
    EXPECT_GT(failingCall, 120U);
    EXPECT_EQ(camerasThatWereSet(0), all);
}

TEST_F(Faults, CallsPerEnumeratedCameraAreFew) {
    const auto calls = [this] {
        return callsOf([this] { makeSystemController(m_system)->enumerate(); });
    };
    const std::uint64_t all = calls();
    m_simulation->SetCameraPlugged("DEV_G002", false);
    const std::uint64_t withoutSecond = calls();
    m_simulation->SetCameraPlugged("DEV_G001", false);
    const std::uint64_t onlyUsb = calls();
    m_simulation->SetCameraPlugged("DEV_U", false);
    const std::uint64_t none = calls();

    EXPECT_EQ(all - withoutSecond, withoutSecond - onlyUsb);
    // Opening, reading and closing; each text and list is asked for twice.
    EXPECT_LE(withoutSecond - onlyUsb, 48U);
    EXPECT_LE(onlyUsb - none, 65U);
}

TEST_F(Faults, CallsPerCameraAutoSetAreFew) {
    const auto controller = makeSystemController(m_system);
    const auto interfaces = controller->enumerate();
    ASSERT_EQ(interfaces.size(), 2U);
    for (const CameraList& cameras : interfaces) {
        const auto autoSet = [&](double margin) {
            return callsOf([&] { cameras.front()->autoSet(margin); });
        };
        // What it needs to know of the features is read now, and no more than once.
        EXPECT_LE(autoSet(0.05), 66U);
        m_log.clear();
        const std::uint64_t searching = autoSet(0.05);
        EXPECT_TRUE(m_log.has("Debug:Autoset completed in 10 steps."));
        EXPECT_LE(searching, 39U);
        // A margin that nothing suffices for spares the search: the calculated bandwidth and ten
        // steps, each one write and one frame rate.
        EXPECT_EQ(searching - autoSet(1e6), 2U * (1 + 10));
    }
}

TEST_F(Faults, CallsPerInterfaceAutoSetAreFew) {
    const auto controller = makeSystemController(m_system);
    ASSERT_EQ(controller->enumerate().at(0).size(), 2U);
    const auto autoSet = [&] {
        return callsOf([&] { controller->autoSetInterface("any", 0, false, 0.1, 0.05); });
    };
    EXPECT_LE(autoSet(), 2 * 83U);
    EXPECT_LE(autoSet(), 2 * 52U);
}

TEST_F(Faults, InterfacesOfTheSimulatedHostHaveTheirSpeeds) {
    const auto controller = makeSystemController(m_system);
    std::vector<std::uint64_t> speeds;
    for (const CameraList& cameras : controller->enumerate())
        speeds.push_back(
            controller->getInterfaceSpeed(cameras.front()->getCameraInfo().interfaceName));
    EXPECT_EQ(speeds, (std::vector<std::uint64_t>{1'000'000'000, 5'000'000'000}));
}

} // namespace
