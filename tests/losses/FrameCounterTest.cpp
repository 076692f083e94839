// SPDX-License-Identifier: BSD-3-Clause
#include "losses/FrameCounter.h"

#include "sdk/OrvFrameWrapper.h"
#include "tests/support/FakeFrame.h"

#include <gmock/gmock.h>

#include <limits>
#include <optional>
#include <tuple>
#include <vector>

namespace {

using namespace testing;

void receive(FrameCounter& counter, const FakeFrame& frame) {
    counter.count(OrvFrameWrapper(std::make_shared<FakeFrame>(frame)));
}

TEST(FrameCounter, findsGapsInTheFrameIds) {
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
        FrameCounter counter(firstId);
        for (const auto& id : ids) {
            FakeFrame frame(id.value_or(0));
            frame.idResult = id ? OrvErrorSuccess : OrvErrorIO;
            receive(counter, frame);
        }
        EXPECT_THAT(counter.statistics(), FieldsAre(ids.size(), _, _, _, _, lastId, lost, _, _, _));
    }
}

TEST(FrameCounter, countsByReceiveStatus) {
    FrameCounter counter(1);
    FakeFrame frame;
    for (const int status : {0, 0, 0, 0, -1, -1, -1, -2, -2, -3, -4, 1}) {
        frame.status = static_cast<OrvFrameStatusType>(status);
        receive(counter, frame);
    }
    frame.status = OrvFrameStatusComplete;
    frame.statusResult = OrvErrorIO;
    frame.size = std::numeric_limits<std::uint32_t>::max();
    receive(counter, frame);
    EXPECT_THAT(counter.statistics(), FieldsAre(13U, 4U, 3U, 1U, 2U, _, _,
                                                12'000U + std::uint64_t{4'294'967'295}, _, 0U));
}

} // namespace
