// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CapacitySearch.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

namespace {

using namespace testing;

/// Searches on a link that loses what exceeds \p capacity. \p estimate changes the share that is
/// told; \p grid is the distance of the loads that cameras can send. Returns the steps.
int search(
    CapacitySearch& search, double capacity,
    const std::function<double(double)>& estimate = [](double share) { return share; },
    double grid = 0) {
    int steps = 0;
    while (const auto asked = search.next()) {
        const double load = grid > 0 ? std::floor(*asked / grid) * grid : *asked;
        if (search.knows(load))
            break;
        search.note(load, load > capacity, estimate(std::min(1.0, capacity / load)));
        ++steps;
    }
    return steps;
}

TEST(CapacitySearch, findsTheCapacityToTwoPercentInEightSteps) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> error(0.9, 1.05);
    for (const double capacity : {1.0, 1.9, 5.0, 20.0, 49.9, 70.0, 98.5, 99.9}) {
        CapacitySearch exact(0.01, 100);
        // The last two loads above are doubted and tried again.
        EXPECT_LE(search(exact, capacity), 6) << capacity;
        EXPECT_TRUE(exact.isPrecise());
        for (int i = 0; i < 200; ++i) {
            CapacitySearch rough(0.01, 100);
            const auto wrong = [&](double share) {
                return std::min(share * error(random), 0.999);
            };
            EXPECT_LE(search(rough, capacity, wrong), CapacitySearch::mostSteps);
            ASSERT_TRUE(rough.lossless()) << capacity;
            EXPECT_LE(*rough.lossless(), capacity);
            EXPECT_GT(*rough.lossless(), capacity * 0.92);
            EXPECT_GT(*rough.lossy(), capacity);
        }
    }
}

TEST(CapacitySearch, usesItsStepsWellWhicheverShareItIsTold) {
    for (double capacity = 1; capacity < 99; capacity *= 1.07) {
        for (const double told : {0.5, 0.7, 0.8, 0.9, 1.0, 1.1}) {
            CapacitySearch rough(0.01, 100);
            const auto wrong = [&](double share) {
                return std::min(share * told, 0.98);
            };
            EXPECT_LE(search(rough, capacity, wrong), CapacitySearch::mostSteps);
            ASSERT_TRUE(rough.lossless()) << capacity << " x " << told;
            EXPECT_LE(*rough.lossy() / *rough.lossless(), told < 0.6 ? 1.1 : 1.04)
                << capacity << " x " << told;
        }
    }
}

TEST(CapacitySearch, endsWhereNothingOrEverythingIsLost) {
    CapacitySearch unfilled(1, 100);
    EXPECT_EQ(search(unfilled, 150), 1);
    EXPECT_EQ(unfilled.lossless(), 100);
    EXPECT_FALSE(unfilled.lossy());
    EXPECT_TRUE(unfilled.isPrecise());

    CapacitySearch lossy(50, 100);
    EXPECT_LE(search(lossy, 20), 3);
    EXPECT_FALSE(lossy.lossless());
    EXPECT_EQ(lossy.lossy(), 50) << "the lowest limits were tried";
    EXPECT_FALSE(lossy.isPrecise());

    // Loads of 10, 20, ..., 100.
    CapacitySearch stepped(10, 100);
    search(
        stepped, 47, [](double share) { return share; }, 10);
    EXPECT_EQ(stepped.lossless(), 40);
}

TEST(CapacitySearch, triesALoadWithASmallLossAgain) {
    CapacitySearch search(1, 100);
    search.note(*search.next(), true, 0.998);
    ASSERT_EQ(search.next(), 100);
    search.note(100, false, 1);
    EXPECT_EQ(search.lossless(), 100) << "the host was disturbed";
    EXPECT_FALSE(search.lossy());
    CapacitySearch overloaded(1, 100);
    overloaded.note(100, true, 0.998);
    overloaded.note(100, true, 0.998);
    EXPECT_EQ(overloaded.lossy(), 100);
    EXPECT_THAT(overloaded.next(), Optional(Lt(100)));
}

} // namespace
