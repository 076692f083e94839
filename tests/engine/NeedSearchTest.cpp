// SPDX-License-Identifier: BSD-3-Clause
#include "engine/NeedSearch.h"
#include "engine/BandwidthSearch.h"
#include "tests/support/CapturedLog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

/// A camera that keeps its rate from \p need bytes per second on. Below, its rate falls in
/// proportion to the limit less \p overhead.
struct Camera {
    double need;
    double overhead;
    double target;
    /// Frames per second to which the camera rounds what it reports.
    double rounding;

    double rateAt(std::int64_t limit) const {
        const double share = (static_cast<double>(limit) - overhead) / (need - overhead);
        return std::round(target * std::clamp(share, 0.0, 1.0) / rounding) * rounding;
    }
};

/// From the slowest camera on the fastest link to a camera that needs all of its range.
TEST(NeedSearch, findsAnyNeedToHalfAPercentWithFewerCallsThanAutoSet) {
    const CapturedLog log;
    std::mt19937 random(11);
    const auto between = [&random](double low, double high) {
        return low + (high - low) * static_cast<double>(random()) / 4294967296.0;
    };
    int tries = 0;
    constexpr int cameras = 3000;
    for (int i = 0; i < cameras && !testing::Test::HasFailure(); ++i) {
        const std::int64_t maximum = 1'250'000'000;
        const auto minimum =
            static_cast<std::int64_t>(between(0, 1) < 0.5 ? 1000 : between(0, 3e7));
        const auto increment = static_cast<std::int64_t>(between(0, 1) < 0.5 ? 1 : between(1, 1e5));
        const StepGrid range(minimum, maximum, increment);
        const double need = std::exp(between(std::log(2e5), std::log(0.94 * 1.25e9)));
        const Camera camera{need, i % 3 == 0 ? between(0, 0.05) * need : 0, between(1, 500), 1e-4};
        // The camera's images are smaller or larger than calculated.
        const double error = i % 4 == 0 ? between(0.8, 1.25) : 1;
        const auto estimate = static_cast<std::int64_t>(std::min(need * error, 1.2e9));

        int own = 0;
        const std::int64_t found =
            NeedSearch([&](std::int64_t limit) { return ++own, camera.rateAt(limit); },
                       camera.target, range)
                .run(estimate);
        int ofAutoSet = 0;
        BandwidthSearch([&](std::int64_t limit) { return ++ofAutoSet, camera.rateAt(limit); },
                        camera.target)
            .run(estimate, maximum);
        EXPECT_EQ(range.atOrBelow(found), found);
        const double wanted = std::max(need, static_cast<double>(minimum));
        EXPECT_NEAR(static_cast<double>(found), wanted,
                    std::max(0.005 * wanted, static_cast<double>(increment)))
            << i << " need " << need << " estimate " << estimate << " after " << own;
        // Auto Set reads the frame rate three times before it searches, this once.
        EXPECT_LE(2 * own + 1, 2 * ofAutoSet + 3) << i;
        tries += own;
    }
    EXPECT_LE(tries, 3.5 * cameras) << tries;
}

TEST(NeedSearch, endsWithACameraThatReportsNonsense) {
    std::mt19937 random(5);
    const StepGrid range(10, 1000, 7);
    const std::function<double(std::int64_t)> cameras[] = {
        [](std::int64_t) { return 0.0; }, [](std::int64_t) { return std::nan(""); },
        [](std::int64_t) { return 30.0; },
        [&](std::int64_t) { return static_cast<double>(random() % 60); },
        [](std::int64_t limit) {
            return limit > 500 ? 1e-300 : 30.0;
        }};
    for (const auto& camera : cameras) {
        int tries = 0;
        const auto counted = [&](std::int64_t limit) {
            EXPECT_TRUE(limit >= 10 && limit <= 1000);
            return ++tries, camera(limit);
        };
        const std::int64_t found = NeedSearch(counted, 30, range).run(400);
        EXPECT_EQ(range.atOrBelow(found), found);
        EXPECT_LE(tries, 10);
    }
}

} // namespace
