// SPDX-License-Identifier: BSD-3-Clause
#include "engine/FrameObserver.h"

#include "tests/engine/FakeFrame.h"
#include "tests/support/MockSdk.h"

#include <chrono>
#include <limits>
#include <optional>
#include <thread>

namespace {

using testing::_;

class FrameObserverTest : public testing::Test {
protected:
    FrameStatistics receive(FrameObserver& observer, const FakeFrame& frame) {
        observer.FrameReceived(std::make_shared<FakeFrame>(frame));
        return observer.statistics();
    }
    FrameStatistics receive(FrameObserver& observer, std::optional<std::uint64_t> id) {
        FakeFrame frame;
        frame.id = id.value_or(0);
        frame.idResult = id ? OrvErrorSuccess : OrvErrorIO;
        return receive(observer, frame);
    }

    std::shared_ptr<testing::NiceMock<MockCamera>> m_camera =
        std::make_shared<testing::NiceMock<MockCamera>>();
};

TEST_F(FrameObserverTest, FindsGapsInTheFrameIds) {
    using Ids = std::vector<std::optional<std::uint64_t>>;
    struct Case {
        std::int32_t firstId;
        Ids ids;
        std::int64_t lastId;
        std::int64_t lost;
    };
    const auto unreadable = std::nullopt;
    const Case cases[] = {{1, {1, 2, 4}, 4, 1},
                          {0, {0, 1, 2}, 3, 0},
                          {0, {2, 3}, 4, 2},
                          {1, {unreadable}, 1, 0},
                          {0, {0, 3, unreadable, 5}, 6, 2},
                          {1, {5, unreadable, unreadable}, 7, 4},
                          // A camera that counts anew gives back more than was lost.
                          {1, {1, 2, 1}, 1, -2},
                          {0, {std::numeric_limits<std::uint64_t>::max()}, 0, -1}};
    for (const Case& testCase : cases) {
        FrameObserver observer(m_camera, testCase.firstId);
        FrameStatistics statistics;
        for (const auto& id : testCase.ids)
            statistics = receive(observer, id);
        EXPECT_EQ(statistics.receivedFrames, testCase.ids.size());
        EXPECT_EQ(statistics.lastFrameId, testCase.lastId);
        EXPECT_EQ(statistics.lostFrames, testCase.lost);
    }
}

TEST_F(FrameObserverTest, CountsByReceiveStatus) {
    FrameObserver observer(m_camera, 1);
    FakeFrame frame;
    for (const int status : {0, 0, 0, 0, -1, -1, -1, -2, -2, -3, -4, 1}) {
        frame.status = static_cast<OrvFrameStatusType>(status);
        receive(observer, frame);
    }
    frame.status = OrvFrameStatusComplete;
    frame.statusResult = OrvErrorIO;
    frame.size = std::numeric_limits<std::uint32_t>::max();
    const FrameStatistics statistics = receive(observer, frame);
    EXPECT_EQ(statistics.receivedFrames, 13U);
    EXPECT_EQ(statistics.completeFrames, 4U);
    EXPECT_EQ(statistics.incompleteFrames, 3U);
    EXPECT_EQ(statistics.tooSmallFrames, 2U);
    EXPECT_EQ(statistics.invalidFrames, 1U);
    EXPECT_EQ(statistics.payloadBytes, 12'000U + std::uint64_t{4'294'967'295});
    EXPECT_EQ(statistics.reserved, 0U);
}

TEST_F(FrameObserverTest, MeasuresTheLastInterval) {
    FrameObserver observer(m_camera, 1);
    // The first interval starts at the clock's zero.
    EXPECT_LT(receive(observer, 1).framesPerSecond, 1.0);
    const auto before = std::chrono::steady_clock::now();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const double rate = receive(observer, 2).framesPerSecond;
    const std::chrono::duration<double> atMost = std::chrono::steady_clock::now() - before;
    EXPECT_LE(rate, 50.1);
    EXPECT_GT(rate, 0.5 / atMost.count());
}

TEST_F(FrameObserverTest, HandsTheFrameBackAndLetsGoOfIt) {
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

TEST_F(FrameObserverTest, ResetClearsEverything) {
    FrameObserver observer(m_camera, 1);
    receive(observer, 3);
    receive(observer, 4);
    observer.reset();
    const FrameStatistics cleared = observer.statistics();
    EXPECT_EQ(cleared.receivedFrames, 0U);
    EXPECT_EQ(cleared.completeFrames, 0U);
    EXPECT_EQ(cleared.lastFrameId, 0);
    EXPECT_EQ(cleared.lostFrames, 0);
    EXPECT_EQ(cleared.payloadBytes, 0U);
    EXPECT_EQ(cleared.framesPerSecond, 0.0);
    EXPECT_LT(receive(observer, 1).framesPerSecond, 1.0);
    EXPECT_EQ(observer.statistics().lostFrames, 0);
}

} // namespace
