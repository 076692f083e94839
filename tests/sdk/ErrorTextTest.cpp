// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/ErrorText.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace {

TEST(ErrorText, hasTheWordsOfItsCode) {
    const std::pair<OrvErrorType, const char*> cases[] = {
        {-40, "(The operation requires more buffers)"},
        {-36, "(The XML for the module is currently not loaded; the module could be in the wrong "
              "state or the XML could not be retrieved or could not be parsed properly)"},
        {-21, "(The valid value set could not be retrieved, since the feature does not provide "
              "this property)"},
        {-1, "(Unexpected fault in Orv API or driver)"},
        {0, "(No error)"},
        {1, "(The minimum error code to use for user defined error codes to avoid conflict with "
            "existing error codes)"},
        {2, "(Return code undefined)"},
        {7000, "<Viewer Timeout>"},
    };
    for (const auto& [code, text] : cases)
        EXPECT_EQ(errorText(code), text);
}

TEST(ErrorText, isDifferentForEachCode) {
    using Limits = std::numeric_limits<OrvErrorType>;
    const std::string undefined = errorText(2);
    for (const OrvErrorType code : {-41, 1000, 6999, 7001, Limits::min(), Limits::max()})
        EXPECT_EQ(errorText(code), undefined) << code;
    std::set<std::string> texts{undefined};
    for (OrvErrorType code = -40; code <= 1; ++code)
        EXPECT_TRUE(texts.insert(errorText(code)).second) << code;
}

} // namespace
