// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureMetaTypes.h"

#include "features/FeatureText.h"
#include "logging/QtMessageHandler.h"
#include "tests/support/CapturedLog.h"

#include <gmock/gmock.h>

namespace {

TEST(FeatureText, numbersAreReadAsTheyAreWritten) {
    EXPECT_EQ(fromHexText(toHexText(-1)), std::int64_t{-1});
    EXPECT_EQ(toDoubleText(-0.0), QStringLiteral("0"));
    EXPECT_EQ(toDoubleText(1e6), QStringLiteral("1000000"));
    EXPECT_EQ(toDoubleText(-2.5e-9), QStringLiteral("-2.5e-09"));
}

TEST(FeatureMetaTypes, variantsConvertToTheWantedAlternative) {
    EXPECT_EQ(toFeatureValue(QStringLiteral("4"), 1), FeatureValue{4.0});
    EXPECT_EQ(toFeatureValue(QStringLiteral("4"), 2), FeatureValue{true});
    EXPECT_EQ(toFeatureValue(QString::fromUtf8("\xC2\xB5s"), 3),
              FeatureValue{std::string("\xC2\xB5s")});
    EXPECT_EQ(toFeatureValue(QVariant(qint64{1} << 62), 0), FeatureValue{std::int64_t{1} << 62});
}

TEST(FeatureMetaTypes, anUnknownAlternativeGivesTheDefaultAndAMessage) {
    const CapturedLog log;
    qInstallMessageHandler(qtMessageHandler);
    EXPECT_EQ(toFeatureValue(QStringLiteral("x"), 4), FeatureValue{});
    qInstallMessageHandler(nullptr);
    EXPECT_THAT(log.text(), testing::StartsWith("Debug:Unsupported value of type [4] cannot be "
                                                "converted to type 'FeatureValue'."));
}

} // namespace
