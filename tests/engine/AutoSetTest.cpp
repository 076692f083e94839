// SPDX-License-Identifier: BSD-3-Clause
#include "OrvCPP/OrvSystem.h"
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"
#include "tests/support/CapturedLog.h"

#include <gtest/gtest.h>

#include <chrono>
#include <numeric>
#include <thread>

namespace {

constexpr double cameraMargin = 0.05;

double interfaceMargin(const CameraHandler& camera) {
    return camera.getCameraInfo().transportLayerType == OrvTransportLayerTypeU3V ? 0.3 : 0.1;
}

/// Frames that an interface's cameras lose or damage in a short benchmark.
std::int64_t lostFrames(SystemController& controller, int index, const CameraList& cameras) {
    controller.startBenchmark(index, false);
    std::this_thread::sleep_for(std::chrono::milliseconds(800));
    controller.stopBenchmark(index);
    std::int64_t lost = 0;
    for (const auto& camera : cameras) {
        const FrameStatistics statistics = camera->getFrameStatistics();
        EXPECT_GT(statistics.receivedFrames, 0U);
        lost += statistics.lostFrames + static_cast<std::int64_t>(statistics.incompleteFrames);
    }
    return lost;
}

std::int64_t sumOfLimits(const CameraList& cameras) {
    return std::accumulate(
        cameras.begin(), cameras.end(), std::int64_t{0},
        [](std::int64_t sum, const auto& camera) { return sum + camera->getBandwidth(); });
}

/// On simulated cameras that together ask for more than their interfaces carry.
TEST(AutoSet, EndsTheLossOfFramesAndUsesTheInterface) {
    const CapturedLog log;
    OrvCPP::OrvSystem& system = OrvCPP::OrvSystem::GetInstance();
    ASSERT_EQ(system.Startup(L":oversubscribed"), OrvErrorSuccess);
    {
        const auto controller = makeSystemController(system);
        const auto interfaces = controller->enumerate();
        for (int index = 0; index < static_cast<int>(interfaces.size()); ++index) {
            const CameraList& cameras = interfaces[static_cast<std::size_t>(index)];
            const std::string id = cameras.front()->getCameraInfo().interfaceName;
            const double margin = interfaceMargin(*cameras.front());
            const double usable =
                static_cast<double>(controller->getInterfaceSpeed(id)) / 8 * (1 - margin);

            EXPECT_GT(lostFrames(*controller, index, cameras), 0) << id;
            controller->autoSetInterface(id, index, false, margin, cameraMargin);
            EXPECT_EQ(lostFrames(*controller, index, cameras), 0) << id;
            EXPECT_LE(static_cast<double>(sumOfLimits(cameras)), usable) << id;
            EXPECT_GE(static_cast<double>(sumOfLimits(cameras)), 0.85 * usable) << id;
        }
    }
    system.Shutdown();
}

} // namespace
