// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/support/FakeCameraProcess.h"
#include "tests/support/SdkFixture.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

/// The camera SDK on fake cameras of the network.
namespace cameras {

using sdk::Camera;
using Clock = std::chrono::steady_clock;

inline const std::vector<std::string> smallFrames{"--width", "320",          "--height",
                                                  "200",     "--frame-rate", "100"};

/// The SDK with real cameras. Start the fake cameras before.
struct Started : sdk::Running {
    Started() : Running(L":genicam") {}
};

/// The camera with a serial number; null when it is absent.
inline std::shared_ptr<Camera> find(const std::string& serial) {
    for (const auto& camera : sdk::cameras()) {
        if (sdk::text(*camera, &Camera::GetSerialNumber) == serial)
            return camera;
    }
    return nullptr;
}

/// Longest time of callAbsent().
constexpr std::chrono::milliseconds patience{3000};

/// Makes the calls of a refresh to a camera that is away: reads it, stops it, closes it, looks for
/// cameras. How long that takes. \p expected is what the reading answers.
inline Clock::duration
callAbsent(Camera& camera, const sdk::Feature& width,
           const testing::Matcher<OrvErrorType>& expected = OrvErrorNotFound) {
    const auto begun = Clock::now();
    for (int i = 0; i < 20; ++i)
        sdk::readInteger(width);
    EXPECT_TRUE(sdk::eventually([&] { return testing::Value(sdk::readInteger(width), expected); }));
    camera.StopContinuousImageAcquisition();
    EXPECT_EQ(camera.Close(), OrvErrorSuccess);
    std::uint32_t count = 0;
    sdk::system().GetCameras(nullptr, count);
    return Clock::now() - begun;
}

/// One fake camera, found by the SDK and opened.
class OneCamera : public testing::Test {
protected:
    void SetUp() override {
        camera = find("FC0001");
        ASSERT_TRUE(camera);
        ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    }

    fakecamera::FakeCameraProcess fake{fakecamera::onlyAddress};
    Started started;
    std::shared_ptr<Camera> camera;
};

} // namespace cameras
