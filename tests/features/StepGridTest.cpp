// SPDX-License-Identifier: BSD-3-Clause
#include "features/StepGrid.h"

#include <gtest/gtest.h>

namespace {

using Int = std::int64_t;
constexpr Int lowest = INT64_MIN;
constexpr Int highest = INT64_MAX;

TEST(StepGrid, roundsAndStepsWithinItsRange) {
    struct Case {
        StepGrid grid;
        Int value;
        Int nearest, up, down;
    };
    const Case cases[] = {
        {{0, 100, 1}, 7, 7, 8, 6},
        {{0, 100, 0}, 7, 7, 8, 6},
        {{3, 100, 4}, 8, 7, 11, 7},
        {{3, 100, 4}, 9, 11, 11, 7},
        {{0, 10, 3}, 10, 9, 9, 9},
        {{0, 10, 3}, 9, 9, 9, 6},
        {{-5, 5, 5}, -9, -5, 0, -5},
        {{lowest, highest, 1}, highest, highest, highest, highest - 1},
        {{lowest, highest, highest}, 0, -1, highest - 1, -1},
        {{0, 0, 0}, 7, 7, 8, 6},
        {{9, 0, 1}, 7, 7, 8, 6},
        {{0, 0, 1}, 7, 0, 0, 0},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.value);
        EXPECT_EQ(test.grid.nearest(test.value), test.nearest);
        EXPECT_EQ(test.grid.stepped(test.value, 1), test.up);
        EXPECT_EQ(test.grid.stepped(test.value, -1), test.down);
    }
}

TEST(StepGrid, aSliderReachesBothEndsOfEveryRange) {
    const StepGrid grids[] = {
        {16, 1936, 16}, {-10, 10, 3},         {0, Int{1} << 40, Int{1} << 38}, {0, highest, 1},
        {lowest, 0, 7}, {lowest, highest, 1}, {highest - 1, highest, 1}};
    for (const StepGrid& grid : grids) {
        SCOPED_TRACE(grid.maximum());
        EXPECT_EQ(grid.valueAt(grid.sliderMinimum()), grid.minimum());
        EXPECT_EQ(grid.valueAt(grid.sliderMaximum()), grid.last());
        const int middle = grid.sliderMinimum() / 2 + grid.sliderMaximum() / 2;
        EXPECT_EQ(grid.nearest(grid.valueAt(middle)), grid.valueAt(middle));
        EXPECT_NEAR(grid.positionOf(grid.valueAt(middle)), middle, 16);
    }
    EXPECT_EQ(grids[2].sliderMaximum(), 4);
    EXPECT_EQ(grids[2].valueAt(3), Int{3} << 38);
}

} // namespace
