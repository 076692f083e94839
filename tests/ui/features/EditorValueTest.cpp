// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureText.h"
#include "features/StepGrid.h"
#include "ui/features/editors/DoubleValidator.h"
#include "ui/features/editors/FloatScale.h"

#include <gmock/gmock.h>

#include <cfloat>

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

TEST(FloatScale, reachesItsEndsAndRounds) {
    const FloatScale fromZero(0, 1e6, 0, true);
    EXPECT_TRUE(fromZero.isLogarithmic());
    EXPECT_GT(fromZero.lower(), 0);
    EXPECT_EQ(fromZero.valueAt(fromZero.lower()), 0);
    EXPECT_EQ(fromZero.valueAt(12345.678), 12346);
    EXPECT_FALSE(FloatScale(-1, 1e6, 0, true).isLogarithmic());
    EXPECT_FALSE(FloatScale(0, 0, 0, false).isUsable());
    EXPECT_EQ(FloatScale(0, 48, INFINITY, false).valueAt(1.23456), 1.23);
    EXPECT_FALSE(FloatScale(-DBL_MAX, DBL_MAX, 0, false).isUsable());
    EXPECT_EQ(FloatScale(0, 48, 0, false).valueAt(1.23456), 1.23);
    const FloatScale stepped(1, 48, 0.5, false);
    EXPECT_EQ(stepped.steps(), 94U);
    EXPECT_EQ(stepped.valueAt(1.3), 1.5);
}

TEST(DoubleValidator, refusesWhatNoFurtherDigitBringsIntoTheRange) {
    const auto stateOf = [](double minimum, double maximum, const char* text) {
        QString input = QString::fromLatin1(text);
        int position = 0;
        return DoubleValidator(minimum, maximum).validate(input, position);
    };
    EXPECT_EQ(stateOf(0, 48, "48"), QValidator::Acceptable);
    EXPECT_EQ(stateOf(0, 48, "1.0123456789"), QValidator::Acceptable);
    EXPECT_EQ(stateOf(-DBL_MAX, DBL_MAX, "123456789012345678901"), QValidator::Acceptable);
    EXPECT_EQ(stateOf(0, 48, ""), QValidator::Intermediate);
    EXPECT_EQ(stateOf(10, 48, "4"), QValidator::Intermediate);
    EXPECT_EQ(stateOf(-48, -10, "-4"), QValidator::Intermediate);
    EXPECT_EQ(stateOf(-48, -10, "-49"), QValidator::Invalid);
    for (const char* text : {"48.1", "-", "1,5", "1e1", "1.01234567891"})
        EXPECT_EQ(stateOf(0, 48, text), QValidator::Invalid) << text;
}

TEST(FeatureText, numbersAreReadAsTheyAreWritten) {
    EXPECT_EQ(fromHexText(toHexText(-1)), Int{-1});
    EXPECT_EQ(toDoubleText(-0.0), QStringLiteral("0"));
    EXPECT_EQ(toDoubleText(1e6), QStringLiteral("1000000"));
    EXPECT_EQ(toDoubleText(-2.5e-9), QStringLiteral("-2.5e-09"));
}

} // namespace
