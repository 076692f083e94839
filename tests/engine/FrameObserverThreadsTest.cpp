// SPDX-License-Identifier: BSD-3-Clause
#include "engine/FrameObserver.h"

#include "sdk/OrvCameraWrapper.h"
#include "tests/support/FakeFrame.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

class QueueingCamera : public OrvCameraWrapper {
public:
    OrvErrorType QueueFrame(const std::shared_ptr<OrvCPP::Frame>&) override {
        return OrvErrorSuccess;
    }
};

TEST(FrameObserverThreads, statisticsAreReadWhileFramesArrive) {
    constexpr std::uint64_t frames = 200'000;
    FrameObserver observer(std::make_shared<QueueingCamera>(), 1);
    std::atomic<bool> done{false};
    std::thread writer([&] {
        const auto frame = std::make_shared<FakeFrame>();
        for (frame->id = 2; frame->id <= 2 * frames; frame->id += 2)
            observer.FrameReceived(frame);
        done = true;
    });
    FrameStatistics previous;
    while (!done) {
        const FrameStatistics now = observer.statistics();
        EXPECT_GE(now.receivedFrames, previous.receivedFrames);
        EXPECT_GE(now.lastFrameId, previous.lastFrameId);
        EXPECT_GE(now.payloadBytes, previous.payloadBytes);
        previous = now;
    }
    writer.join();
    EXPECT_EQ(observer.statistics().receivedFrames, frames);
    EXPECT_EQ(observer.statistics().lostFrames, static_cast<std::int64_t>(frames));
    EXPECT_EQ(observer.statistics().payloadBytes, 1000 * frames);
}

} // namespace
