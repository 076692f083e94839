// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/ErrorText.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

struct Row {
    OrvErrorType code;
    const char* text;
};

class ErrorTextTest : public testing::TestWithParam<Row> {};

TEST_P(ErrorTextTest, IsExact) {
    EXPECT_EQ(errorText(GetParam().code), GetParam().text);
}

constexpr const char* undefined = "(Return code undefined)";

/// Both ends of the table, the odd ones, and enough in between to see a shift.
const Row rows[] = {
    {0, "(No error)"},
    {-1, "(Unexpected fault in Orv API or driver)"},
    {-7, "(One of the parameters was invalid (usually an illegal pointer))"},
    {-11, "(The value was not valid; either out of bounds or not an increment of the minimum)"},
    {-14, "(Resources not available (e.g memory))"},
    {-15, "(Call is invalid in the current context (e.g callback))"},
    {-20, "(Low level IO error in transport layer)"},
    {-24, "(The responsible module/entity is busy executing actions)"},
    {-28, "(Error condition unknown)"},
    {-32, "(The given address is out of range or invalid for internal reasons)"},
    {-36, "(The XML for the module is currently not loaded; the module could be in the wrong state "
          "or the XML could not be retrieved or could not be parsed properly)"},
    {-40, "(The operation requires more buffers)"},
    {1, "(The minimum error code to use for user defined error codes to avoid conflict with "
        "existing error codes)"},
    {7000, "<Viewer Timeout>"},
    {-41, undefined},
    {2, undefined},
    {6999, undefined},
    {7001, undefined},
    {std::numeric_limits<OrvErrorType>::min(), undefined},
    {std::numeric_limits<OrvErrorType>::max(), undefined},
};

INSTANTIATE_TEST_SUITE_P(EveryCode, ErrorTextTest, testing::ValuesIn(rows),
                         [](const testing::TestParamInfo<Row>& row) {
                             const long long code = row.param.code;
                             return code < 0 ? "Minus" + std::to_string(-code)
                                             : std::to_string(code);
                         });

} // namespace
