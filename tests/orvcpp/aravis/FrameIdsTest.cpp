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

TEST(FrameNumbers, areExtended) {
    const struct {
        const char* what;
        std::uint64_t first;
        std::optional<std::uint64_t> previous;
        /// The camera's numbers; negative for an incomplete frame.
        std::vector<std::int64_t> raw;
        std::vector<std::uint64_t> expected;
    } cases[] = {{"plain", 1, {}, {1, 2, 4}, {1, 2, 4}},
                 {"the first ones lost", 1, {}, {3, 4}, {3, 4}},
                 {"counts on from before", 1, 65000, {65001, 65003}, {1, 3}},
                 {"counts on from a small number", 1, 9, {10, 11}, {1, 2}},
                 {"counts anew", 1, 9, {1, 2}, {1, 2}},
                 {"over the end of 16 bits, without 0", 1, {}, {65534, 65535, 1, 2}, {1, 2, 3, 4}},
                 {"lost over the end", 1, {}, {65534, 3}, {1, 5}},
                 {"in the wrong order", 1, {}, {1, 3, 2, 4}, {1, 3, 2, 4}},
                 {"in the wrong order over the end", 1, 65000, {65534, 1, 65535, 2}, {1, 3, 2, 4}},
                 {"64 bits", 1, {}, {65535, 65536, 65537}, {1, 2, 3}},
                 {"64 bits and a long gap", 1, {}, {1, beyond16Bits}, {1, 0x1FFFF}},
                 {"USB", 0, {}, {0, 1, 3}, {0, 1, 3}},
                 {"USB counts on", 0, 700, {701, 702}, {0, 1}},
                 {"incomplete", 1, {}, {1, -2, 3}, {1, 2, 3}},
                 {"incomplete with a stale number", 1, {}, {7, 8, -6, 10}, {7, 8, untrusted, 10}},
                 {"stale at first", 1, {}, {-500, 2}, {untrusted, 2}}};
    for (const auto& [what, first, previous, raw, expected] : cases) {
        FrameIds ids(first, previous);
        std::vector<std::uint64_t> extended;
        for (const std::int64_t id : raw)
            extended.push_back(
                ids.extend(static_cast<std::uint64_t>(std::abs(id)), id >= 0).value_or(untrusted));
        EXPECT_EQ(extended, expected) << what;
    }
}

} // namespace
