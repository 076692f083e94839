// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/ErrorText.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace {

TEST(ErrorText, isExact) {
    using Limits = std::numeric_limits<OrvErrorType>;
    const std::pair<OrvErrorType, const char*> rows[] = {
        {0, "(No error)"},
        {-1, "(Unexpected fault in Orv API or driver)"},
        {-14, "(Resources not available (e.g memory))"},
        {-21, "(The valid value set could not be retrieved, since the feature does not provide "
              "this property)"},
        {-36, "(The XML for the module is currently not loaded; the module could be in the wrong "
              "state or the XML could not be retrieved or could not be parsed properly)"},
        {-40, "(The operation requires more buffers)"},
        {1, "(The minimum error code to use for user defined error codes to avoid conflict with "
            "existing error codes)"},
        {7000, "<Viewer Timeout>"},
    };
    for (const auto& [code, text] : rows)
        EXPECT_EQ(errorText(code), text);
    for (const OrvErrorType code : {-41, 2, 1000, 6999, 7001, Limits::min(), Limits::max()})
        EXPECT_EQ(errorText(code), "(Return code undefined)") << code;
}

} // namespace
