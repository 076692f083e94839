// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/DoubleValidator.h"
#include "ui/features/editors/FloatScale.h"

#include <gmock/gmock.h>

#include <cfloat>

namespace {

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

} // namespace
