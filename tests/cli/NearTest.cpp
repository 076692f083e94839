// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Near.h"

#include <gmock/gmock.h>

namespace {

struct Distance {
    const char* a;
    const char* b;
    int expected;
};

class EditDistance : public testing::TestWithParam<Distance> {};

TEST_P(EditDistance, countsChanges) {
    const QString a = QLatin1String(GetParam().a);
    const QString b = QLatin1String(GetParam().b);
    EXPECT_EQ(cli::editDistance(a, b), GetParam().expected);
    EXPECT_EQ(cli::editDistance(b, a), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, EditDistance,
                         testing::Values(Distance{"", "", 0}, Distance{"", "abc", 3},
                                         Distance{"Width", "width", 0},
                                         Distance{"Width", "Widht", 1}, Distance{"ab", "cab", 1},
                                         Distance{"ab", "xy", 2},
                                         Distance{"kitten", "sitting", 3}));

TEST(NearNames, areTheNearestFirstAndNotMany) {
    const auto known = QStringLiteral("Width,WidthMax,Weight,Height,Gain").split(QLatin1Char(','));
    EXPECT_EQ(cli::nearNames(QStringLiteral("Wigth"), known).constFirst(), QStringLiteral("Width"));
    EXPECT_EQ(cli::nearNames(QStringLiteral("idth"), known),
              QStringList({QStringLiteral("Width"), QStringLiteral("WidthMax")}));
    EXPECT_TRUE(cli::nearNames(QStringLiteral("Exposure"), known).isEmpty());
    EXPECT_EQ(cli::didYouMean(QStringLiteral("gian"), known),
              QStringLiteral(" Did you mean \"Gain\"?"));
}

} // namespace
