// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/FrameIds.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace orv::aravis;

struct NumberCase {
    const char* what;
    std::uint64_t first;
    std::optional<std::uint64_t> previous;
    /// The camera's numbers; negative for an incomplete frame.
    std::vector<std::int64_t> raw;
    /// 0xBAD for an unreliable number.
    std::vector<std::uint64_t> expected;
};

constexpr std::uint64_t untrusted = 0xBAD;

void PrintTo(const NumberCase& row, std::ostream* out) {
    *out << row.what;
}

class FrameNumbers : public testing::TestWithParam<NumberCase> {};

TEST_P(FrameNumbers, areExtended) {
    FrameIds ids(GetParam().first, GetParam().previous);
    std::vector<std::uint64_t> extended;
    for (const std::int64_t raw : GetParam().raw)
        extended.push_back(
            ids.extend(static_cast<std::uint64_t>(std::abs(raw)), raw >= 0).value_or(untrusted));
    EXPECT_EQ(extended, GetParam().expected);
}

const std::int64_t beyond16Bits = 0x1FFFF;

INSTANTIATE_TEST_SUITE_P(
    Cases, FrameNumbers,
    testing::Values(
        NumberCase{"plain", 1, {}, {1, 2, 4}, {1, 2, 4}},
        NumberCase{"the first ones lost", 1, {}, {3, 4}, {3, 4}},
        NumberCase{"counts on from before", 1, 65000, {65001, 65003}, {1, 3}},
        NumberCase{"counts on from a small number", 1, 9, {10, 11}, {1, 2}},
        NumberCase{"counts anew", 1, 9, {1, 2}, {1, 2}},
        NumberCase{"over the end of 16 bits, without 0", 1, {}, {65534, 65535, 1, 2}, {1, 2, 3, 4}},
        NumberCase{"lost over the end", 1, {}, {65534, 3}, {1, 5}},
        NumberCase{"in the wrong order", 1, {}, {1, 3, 2, 4}, {1, 3, 2, 4}},
        NumberCase{"in the wrong order over the end", 1, 65000, {65534, 1, 65535, 2}, {1, 3, 2, 4}},
        NumberCase{"64 bits", 1, {}, {65535, 65536, 65537}, {1, 2, 3}},
        NumberCase{"64 bits and a long gap", 1, {}, {1, beyond16Bits}, {1, 0x1FFFF}},
        NumberCase{"USB", 0, {}, {0, 1, 3}, {0, 1, 3}},
        NumberCase{"USB counts on", 0, 700, {701, 702}, {0, 1}},
        NumberCase{"incomplete", 1, {}, {1, -2, 3}, {1, 2, 3}},
        NumberCase{"incomplete with a stale number", 1, {}, {7, 8, -6, 10}, {7, 8, untrusted, 10}},
        NumberCase{"stale at first", 1, {}, {-500, 2}, {untrusted, 2}}),
    [](const auto& row) {
        std::string name = row.param.what;
        std::replace_if(
            name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
        return name;
    });

} // namespace
