// SPDX-License-Identifier: BSD-3-Clause
#include "engine/FrameObserver.h"

#include "tests/support/FakeFrame.h"
#include "tests/support/MockSdk.h"

#include <limits>
#include <optional>
#include <tuple>
#include <utility>

namespace {

using namespace testing;

class FrameObserverTest : public testing::Test {
protected:
    FrameStatistics receive(FrameObserver& observer, const FakeFrame& frame) {
        observer.FrameReceived(std::make_shared<FakeFrame>(frame));
        return observer.statistics();
    }
    FrameStatistics receive(FrameObserver& observer, std::optional<std::uint64_t> id) {
        FakeFrame frame(id.value_or(0));
        frame.idResult = id ? OrvErrorSuccess : OrvErrorIO;
        return receive(observer, frame);
    }

    std::shared_ptr<testing::NiceMock<MockCamera>> m_camera = makeCamera();
};

TEST_F(FrameObserverTest, findsGapsInTheFrameIds) {
    using Ids = std::vector<std::optional<std::uint64_t>>;
    const auto unreadable = std::nullopt;
    // The first ID, those that arrive, the last one and the frames lost.
    const std::tuple<std::int32_t, Ids, std::int64_t, std::int64_t> cases[] = {
        {1, {1, 2, 4}, 4, 1},
        {0, {0, 1, 2}, 3, 0},
        {0, {2, 3}, 4, 2},
        {1, {unreadable}, 1, 0},
        {0, {0, 3, unreadable, 5}, 6, 2},
        {1, {5, unreadable, unreadable}, 7, 4},
        // A restarted count makes the number of lost frames negative.
        {1, {1, 2, 1}, 1, -2},
        {0, {std::numeric_limits<std::uint64_t>::max()}, 0, -1}};
    for (const auto& [firstId, ids, lastId, lost] : cases) {
        FrameObserver observer(m_camera, firstId);
        for (const auto& id : ids)
            receive(observer, id);
        EXPECT_THAT(observer.statistics(),
                    FieldsAre(ids.size(), _, _, _, _, lastId, lost, _, _, _));
    }
}

TEST_F(FrameObserverTest, countsByReceiveStatus) {
    FrameObserver observer(m_camera, 1);
    FakeFrame frame;
    for (const int status : {0, 0, 0, 0, -1, -1, -1, -2, -2, -3, -4, 1}) {
        frame.status = static_cast<OrvFrameStatusType>(status);
        receive(observer, frame);
    }
    frame.status = OrvFrameStatusComplete;
    frame.statusResult = OrvErrorIO;
    frame.size = std::numeric_limits<std::uint32_t>::max();
    EXPECT_THAT(receive(observer, frame), FieldsAre(13U, 4U, 3U, 1U, 2U, _, _,
                                                    12'000U + std::uint64_t{4'294'967'295}, _, 0U));
}

TEST_F(FrameObserverTest, measuresTheLastInterval) {
    std::int64_t now = 0;
    FrameObserver observer(m_camera, 1, [&now] { return now; });
    // The first interval starts at the clock's zero; one below a microsecond repeats the last rate.
    const std::pair<std::int64_t, double> intervals[] = {
        {4'000'000'000, 0.25}, {20'000'000, 50}, {2'000'000, 500}, {999, 500}, {0, 500},
        {1'000, 1'000'000}};
    for (const auto& [nanoseconds, rate] : intervals) {
        now += nanoseconds;
        EXPECT_DOUBLE_EQ(receive(observer, 1).framesPerSecond, rate) << nanoseconds;
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
    EXPECT_DOUBLE_EQ(receive(observer, 1).framesPerSecond, 0.25) << "from the clock's zero again";
    observer.reset();
    now = 500;
    EXPECT_EQ(receive(observer, 1).framesPerSecond, 0.0) << "without a rate to repeat";
}

} // namespace
