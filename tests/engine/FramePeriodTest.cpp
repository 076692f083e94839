// SPDX-License-Identifier: BSD-3-Clause
#include "engine/FramePeriod.h"

#include <gtest/gtest.h>

namespace {

/// Of \p count frames, 125 per second from ID 1000 on, noticed \p firstDelay and \p lastDelay
/// seconds late at the ends. Every fifth is lost.
double periodOf(int count, double firstDelay, double lastDelay) {
    FramePeriod period;
    for (int i = 0; i < count; ++i) {
        if (i % 5 == 2)
            continue;
        const double delay = i == 0 ? firstDelay : i == count - 1 ? lastDelay : 0;
        period.add(1000 + i, 7e6 + i / 125.0 + delay);
    }
    return period.seconds().value_or(0);
}

TEST(FramePeriod, isHardlyChangedByOneFrameThatIsNoticedLate) {
    EXPECT_NEAR(periodOf(2, 0, 0), 0.008, 1e-9);
    EXPECT_NEAR(periodOf(50, 0, 0), 0.008, 1e-9);
    // 8 ms of 400 ms are 2 %.
    EXPECT_NEAR(periodOf(50, 0.008, 0), 0.008, 0.003 * 0.008);
    EXPECT_NEAR(periodOf(50, 0, 0.008), 0.008, 0.003 * 0.008);
}

TEST(FramePeriod, isNotKnownBeforeTwoFrames) {
    FramePeriod period;
    EXPECT_FALSE(period.seconds());
    period.add(4, 1.5);
    EXPECT_FALSE(period.seconds());
    period.add(6, 1.7);
    EXPECT_NEAR(period.seconds().value_or(0), 0.1, 1e-9);
}

} // namespace
