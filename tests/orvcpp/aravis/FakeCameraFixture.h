// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/orvcpp/SdkFixture.h"
#include "tests/support/FakeCameraProcess.h"

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
