// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/ErrorText.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace {

TEST(ErrorText, isUndefinedForOtherCodes) {
    using Limits = std::numeric_limits<OrvErrorType>;
    for (const OrvErrorType code : {-41, 2, 1000, 6999, 7001, Limits::min(), Limits::max()})
        EXPECT_EQ(errorText(code), "(Return code undefined)") << code;
}

TEST(ErrorText, isDifferentForEachCode) {
    std::set<std::string> texts{"(Return code undefined)"};
    for (OrvErrorType code = -40; code <= 1; ++code)
        EXPECT_TRUE(texts.insert(errorText(code)).second) << code;
    // The table is dense: its ends and one code between show that it is not shifted.
    EXPECT_EQ(errorText(-40), "(The operation requires more buffers)");
    EXPECT_EQ(errorText(-14), "(Resources not available (e.g memory))");
    EXPECT_EQ(errorText(0), "(No error)");
    EXPECT_EQ(errorText(7000), "<Viewer Timeout>");
}

} // namespace
