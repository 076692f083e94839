// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraHandler.h"
#include "engine/LinkCalibration.h"
#include "engine/LinkPlan.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "features/FeatureController.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FaultyCameras.h"
#include "tests/support/SdkFixture.h"

#include <cmath>
#include <stdexcept>

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
    for (const std::uint64_t most : {139U, 2U * 52U})
        EXPECT_LE(m_cameras.callsOf([&] { controller->autoSetInterface("", 0, false, 0.1, 0.05); }),
                  most);
}

/// One camera's limit is switched off, another one is triggered.
class PlanFaults : public Faults {
protected:
    PlanFaults() {
        enumerate();
        prepare();
        m_former = state();
    }

    void prepare() const {
        const auto set = [this](std::size_t camera, const char* feature, FeatureValue value) {
            EXPECT_TRUE(m_all[camera]->getFeatureController()->setFeatureValue(cameraModule,
                                                                               feature, value));
        };
        set(0, mode, std::string("On"));
        set(0, limit, std::int64_t{3'100'000});
        set(0, mode, std::string("Off"));
        set(1, limit, std::int64_t{2'500'000});
        set(1, "TriggerMode", std::string("On"));
        set(2, limit, std::int64_t{4'000'000});
    }

    void enumerate() {
        m_all.clear();
        m_interfaces.clear();
        m_controller = makeSystemController(m_cameras.system);
        m_interfaces = m_controller->enumerate();
        for (const CameraList& cameras : m_interfaces)
            m_all.insert(m_all.end(), cameras.begin(), cameras.end());
        ASSERT_EQ(m_all.size(), std::size_t{FaultyCameras::count});
    }

    std::string state() const {
        std::string text;
        for (const auto& camera : m_all) {
            const auto features = camera->getFeatureController();
            for (const char* name : {limit, mode})
                text += toText(features->getFeatureValue(cameraModule, name)) + ' ';
        }
        return text;
    }

    /// Plans all interfaces, together, and applies the plan if \p applies. Returns the calls made.
    std::uint64_t plan(std::uint64_t failingCall, bool applies) {
        enumerate();
        return m_cameras.callsOf(
            [&] {
                LinkPlan plan(m_all, 0.05);
                plan.findNeeds([] { return false; });
                {
                    SendingRates rates(plan.camerasToMeasure());
                    rates.sample();
                    plan.noteMeasurement(rates);
                }
                plan.compareWithAutoSet([this] {
                    for (int i = 0; i < static_cast<int>(m_interfaces.size()); ++i)
                        m_controller->autoSetInterface("", i, false, 0.1, 0.05);
                });
                plan.divide(9e6);
                plan.putBack();
                m_isApplied = applies && plan.apply();
            },
            failingCall);
    }

    static constexpr const char* limit = "DeviceLinkThroughputLimit";
    static constexpr const char* mode = "DeviceLinkThroughputLimitMode";
    std::shared_ptr<SystemController> m_controller;
    std::vector<CameraList> m_interfaces;
    CameraList m_all;
    std::string m_former;
    bool m_isApplied = false;
};

TEST_F(PlanFaults, anyFailingCallLeavesTheFormerLimits) {
    const std::uint64_t calls = FaultyCameras::failEachCall([this](auto call) {
        const std::uint64_t made = plan(call, false);
        EXPECT_EQ(state(), m_former) << "failing call " << call;
        return made;
    });
    EXPECT_GT(calls, 300U);
    EXPECT_FALSE(m_log.text().find("Cannot put the bandwidth limit back") != std::string::npos);
}

TEST_F(PlanFaults, anyFailingCallOfApplyingLeavesAllLimitsOrNone) {
    const std::uint64_t planning = plan(0, false);
    int applied = 0;
    FaultyCameras::failEachCall(
        [&](auto call) {
            const std::uint64_t made = plan(call, true);
            const std::string planned = "3000000 On 3000000 On 3000000 On ";
            EXPECT_EQ(state(), m_isApplied ? planned : m_former) << "failing call " << call;
            applied += m_isApplied ? 1 : 0;
            prepare();
            return made;
        },
        planning - 10);
    EXPECT_GT(applied, 0);
}

TEST_F(PlanFaults, aCameraThatRefusesItsPlanLeavesTheFormerLimitsOfTheOthers) {
    {
        LinkPlan plan(m_all, 0.05);
        plan.findNeeds([] { return false; });
        plan.divide(9e6);
        m_cameras.simulation.SetCameraPlugged("DEV_U", false);
        EXPECT_FALSE(plan.apply());
    }
    m_all.pop_back();
    EXPECT_EQ(m_former.rfind(state(), 0), 0U) << state();
}

TEST_F(PlanFaults, aNeedTakesFewerCallsThanAutoSet) {
    for (std::size_t i = 0; i < FaultyCameras::count; ++i) {
        const auto calls = [&](bool isFirst, auto operation) {
            if (isFirst)
                enumerate();
            m_all[i]->switchBandwidthLimitOn();
            return m_cameras.callsOf([&] { operation(*m_all[i]); });
        };
        // The first run reads the descriptions of the features.
        for (const bool isFirst : {true, false}) {
            const auto ofAutoSet = calls(isFirst, [](auto& camera) { camera.autoSet(0.05); });
            EXPECT_LT(calls(isFirst, [](auto& camera) { camera.findNeed(0.05); }), ofAutoSet);
        }
        // 64 x 64 bytes, 1000 frames per second.
        EXPECT_NEAR(static_cast<double>(m_all[i]->findNeed(0.05).bytesPerSecond), 4.096e6, 0.02e6);
    }
}

TEST_F(PlanFaults, aCancelledPlanLeavesTheFormerLimits) {
    for (int searched = 0; searched <= FaultyCameras::count; ++searched) {
        int asked = 0;
        LinkPlan(m_all, 0.05).findNeeds([&] { return ++asked > searched; });
        EXPECT_EQ(state(), m_former) << searched;
    }
}

/// A link that carries 5 MB/s of what the cameras may send, 12.3 MB/s.
TEST_F(PlanFaults, anyFailingCallOfACalibrationLeavesTheFormerLimits) {
    int measured = 0;
    const auto calibrate = [&](std::uint64_t failingCall) {
        enumerate();
        return m_cameras.callsOf(
            [&] {
                LinkPlan plan(m_all, 0);
                plan.findNeeds([] { return false; });
                if (!LinkCalibration::obstacle(plan).empty())
                    return;
                LinkCalibration calibration(plan);
                const auto outcome =
                    calibration.run([&]() -> std::optional<LinkCalibration::Measurement> {
                        // What the cameras may send now, and not what the calibration says.
                        double sum = 0;
                        for (const auto& camera : m_all)
                            sum += static_cast<double>(camera->getBandwidth());
                        return LinkCalibration::Measurement{sum > 5e6, std::min(5e6 / sum, 1.0)};
                    });
                EXPECT_TRUE(failingCall > 0 ||
                            std::abs(calibration.lossless().value() - 5e6) < 1e5);
                measured += outcome == LinkCalibration::Outcome::Measured ? 1 : 0;
            },
            failingCall);
    };
    calibrate(0);
    EXPECT_EQ(measured, 1);
    const std::uint64_t calls = FaultyCameras::failEachCall([&](auto call) {
        const std::uint64_t made = calibrate(call);
        EXPECT_EQ(state(), m_former) << "failing call " << call;
        return made;
    });
    EXPECT_GT(calls, 200U);
    EXPECT_EQ(m_log.text().find("Cannot put the bandwidth limit back"), std::string::npos);
}

TEST_F(PlanFaults, aCalibrationThatEndsEarlyOrThrowsLeavesTheFormerLimits) {
    for (int steps = 0; steps < 4; ++steps) {
        for (const bool isThrown : {false, true}) {
            LinkPlan plan(m_all, 0);
            plan.findNeeds([] { return false; });
            int made = 0;
            const auto measure = [&]() -> std::optional<LinkCalibration::Measurement> {
                EXPECT_NE(state(), m_former);
                if (made++ < steps)
                    return LinkCalibration::Measurement{true, 0.9};
                if (isThrown)
                    throw std::runtime_error("unplugged");
                return std::nullopt;
            };
            LinkCalibration calibration(plan);
            try {
                EXPECT_EQ(calibration.run(measure), LinkCalibration::Outcome::Cancelled);
                EXPECT_FALSE(isThrown);
                EXPECT_EQ(state(), m_former);
            } catch (const std::runtime_error&) {
                EXPECT_TRUE(isThrown);
                plan.putBack();
                EXPECT_EQ(state(), m_former);
            }
        }
    }
}

} // namespace
