// SPDX-License-Identifier: BSD-3-Clause
#include "engine/FramePeriod.h"

#include <gtest/gtest.h>

namespace {

FramePeriod::Time at(double seconds) {
    return FramePeriod::Time(std::chrono::duration_cast<FramePeriod::Time::duration>(
        std::chrono::duration<double>(7e6 + seconds)));
}

/// Of \p count frames, 125 per second from ID 1000 on, noticed \p firstDelay and \p lastDelay
/// seconds late at the ends. Every fifth is lost.
double periodOf(int count, double firstDelay, double lastDelay) {
    FramePeriod period;
    for (int i = 0; i < count; ++i) {
        const double delay = i == 0 ? firstDelay : i == count - 1 ? lastDelay : 0;
        if (i % 5 != 2)
            period.add(1000 + i, at(i / 125.0 + delay));
    }
    return period.seconds().value_or(0);
}

TEST(FramePeriod, isHardlyChangedByOneFrameThatIsNoticedLate) {
    EXPECT_NEAR(periodOf(2, 0, 0), 0.008, 1e-7);
    EXPECT_NEAR(periodOf(50, 0, 0), 0.008, 1e-7);
    // 8 ms of 400 ms are 2 %.
    EXPECT_NEAR(periodOf(50, 0.008, 0), 0.008, 0.005 * 0.008);
    EXPECT_NEAR(periodOf(50, 0, 0.008), 0.008, 0.005 * 0.008);
}

TEST(FramePeriod, isTheMeanOfFramesThatComeInBursts) {
    FramePeriod period;
    for (int i = 0; i < 20; ++i)
        period.add(i, at(i * 0.01 + (i < 10 ? 0 : 0.8)));
    EXPECT_NEAR(period.seconds().value_or(0), 0.99 / 19, 0.05 * 0.99 / 19);
}

TEST(FramePeriod, isNotKnownBeforeTwoFrames) {
    FramePeriod period;
    EXPECT_FALSE(period.seconds());
    period.add(4, at(1.5));
    EXPECT_FALSE(period.seconds());
}

} // namespace
