// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureValue.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(FeatureValue, TextsAreTheSameInEveryLocale) {
    EXPECT_EQ(toText(std::int64_t{-12}), "-12");
    EXPECT_EQ(toText(16.98), "16.980000");
    EXPECT_EQ(toText(true), "true");
    EXPECT_EQ(toText(std::string("On")), "On");
    EXPECT_EQ(toText(std::numeric_limits<double>::lowest()).substr(0, 6), "-17976");
}

} // namespace
