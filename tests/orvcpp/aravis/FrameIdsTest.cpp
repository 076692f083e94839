// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/FrameIds.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <optional>
#include <vector>

namespace {

using namespace orv::aravis;

constexpr std::uint64_t untrusted = 0xBAD;
constexpr std::int64_t beyond16Bits = 0x1FFFF;

TEST(FrameIds, countFromZeroInEachAcquisition) {
    const struct {
        const char* what;
        std::optional<std::uint64_t> previous;
        /// The camera's numbers; negative for an incomplete frame.
        std::vector<std::int64_t> raw;
        std::vector<std::uint64_t> expected;
    } cases[] = {{"plain", {}, {0, 1, 3}, {0, 1, 3}},
                 {"the first ones lost", {}, {3, 4}, {3, 4}},
                 {"counts on from before", 700, {701, 703}, {0, 2}},
                 {"counts on from a small number", 9, {10, 11}, {0, 1}},
                 {"counts anew", 9, {1, 2}, {1, 2}},
                 {"a long gap", {}, {1, beyond16Bits}, {1, beyond16Bits}},
                 {"incomplete", {}, {1, -2, 3}, {1, 2, 3}},
                 {"incomplete with a stale number", {}, {7, 8, -6, 10}, {7, 8, untrusted, 10}},
                 {"stale at first", {}, {-500, 2}, {untrusted, 2}}};
    for (const auto& [what, previous, raw, expected] : cases) {
        FrameIds ids(previous);
        std::vector<std::uint64_t> numbers;
        for (const std::int64_t id : raw)
            numbers.push_back(
                ids.extend(static_cast<std::uint64_t>(std::abs(id)), id >= 0).value_or(untrusted));
        EXPECT_EQ(numbers, expected) << what;
    }
}

} // namespace
