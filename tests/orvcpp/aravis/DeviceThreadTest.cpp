// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/DeviceThread.h"
#include "orvcpp/aravis/device/DetachableThreads.h"

#include <gmock/gmock.h>

#include <chrono>
#include <future>
#include <memory>
#include <new>
#include <thread>

namespace {

using namespace orv::aravis;

TEST(DeviceThread, waitsOnceForAStuckDeviceAndGoesOnWhenItAnswers) {
    using namespace std::chrono_literals;
    DetachableThreads threads;
    const auto device = DeviceThread::begin(threads, 0ms);
    EXPECT_EQ(device->call([]() -> OrvErrorType { throw std::bad_alloc(); }, 10s),
              OrvErrorResources);

    const auto hangUntil = [](const std::shared_ptr<std::promise<void>>& answer) {
        return [answer]() -> OrvErrorType {
            answer->get_future().wait();
            return OrvErrorSuccess;
        };
    };
    const auto answer = std::make_shared<std::promise<void>>();
    EXPECT_EQ(device->call(hangUntil(answer), 10ms), OrvErrorTimeout);
    const auto succeed = []() -> OrvErrorType {
        return OrvErrorSuccess;
    };
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(device->call(succeed, 10s), OrvErrorTimeout);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 5s);
    answer->set_value();
    while (device->call(succeed, 10s) == OrvErrorTimeout)
        std::this_thread::yield();
    EXPECT_EQ(device->call(succeed, 10s), OrvErrorSuccess);

    const auto release = std::make_shared<std::promise<void>>();
    auto stalled =
        std::async(std::launch::async, [&] { return device->call(hangUntil(release), 60s); });
    while (stalled.wait_for(1ms) != std::future_status::ready)
        device->interrupt();
    EXPECT_EQ(stalled.get(), OrvErrorTimeout);
    release->set_value();
    device->quit();
    threads.join(10s);
}

} // namespace
