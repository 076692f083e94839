// SPDX-License-Identifier: BSD-3-Clause
#include "engine/FrameObserver.h"

#include "tests/support/FakeFrame.h"
#include "tests/support/MockSdk.h"

#include <utility>

namespace {

using namespace testing;

class FrameObserverTest : public testing::Test {
protected:
    FrameStatistics receive(FrameObserver& observer, const FakeFrame& frame) {
        observer.FrameReceived(std::make_shared<FakeFrame>(frame));
        return observer.statistics();
    }

    std::shared_ptr<testing::NiceMock<MockCamera>> m_camera = makeCamera();
};

TEST_F(FrameObserverTest, measuresTheLastInterval) {
    std::int64_t now = 0;
    FrameObserver observer(m_camera, 1, [&now] { return now; });
    // The first interval starts at the clock's zero; one below a microsecond repeats the last rate.
    const std::pair<std::int64_t, double> intervals[] = {
        {4'000'000'000, 0.25}, {20'000'000, 50}, {2'000'000, 500}, {999, 500}, {0, 500},
        {1'000, 1'000'000}};
    for (const auto& [nanoseconds, rate] : intervals) {
        now += nanoseconds;
        EXPECT_DOUBLE_EQ(receive(observer, FakeFrame(1)).framesPerSecond, rate) << nanoseconds;
    }
}

TEST_F(FrameObserverTest, handsTheFrameBackAndLetsGoOfIt) {
    FrameObserver observer(m_camera, 1);
    auto frame = std::make_shared<FakeFrame>();
    const std::weak_ptr<FakeFrame> alive = frame;
    EXPECT_CALL(*m_camera, QueueFrame(_)).WillOnce([&](const auto& queued) {
        EXPECT_EQ(queued, frame);
        EXPECT_EQ(observer.statistics().receivedFrames, 1U);
        EXPECT_GT(observer.statistics().framesPerSecond, 0.0);
        return OrvErrorType{OrvErrorIO};
    });
    observer.FrameReceived(frame);
    frame.reset();
    EXPECT_TRUE(alive.expired());
}

TEST_F(FrameObserverTest, resetClearsEverything) {
    std::int64_t now = 3'000'000'000;
    FrameObserver observer(m_camera, 1, [&now] { return now; });
    FakeFrame frame;
    for (frame.id = 3; frame.id < 7; ++frame.id) {
        frame.status = static_cast<OrvFrameStatusType>(3 - static_cast<int>(frame.id));
        receive(observer, frame);
    }
    observer.reset();
    EXPECT_THAT(observer.statistics(), FieldsAre(0U, 0U, 0U, 0U, 0U, 0, 0, 0U, 0.0, 0U));
    now += 1'000'000'000;
    EXPECT_DOUBLE_EQ(receive(observer, FakeFrame(1)).framesPerSecond, 0.25)
        << "from the clock's zero again";
    observer.reset();
    now = 500;
    EXPECT_EQ(receive(observer, FakeFrame(1)).framesPerSecond, 0.0) << "without a rate to repeat";
}

} // namespace
