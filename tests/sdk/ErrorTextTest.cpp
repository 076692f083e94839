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

const Row rows[] = {
    {0, "(No error)"},
    {-1, "(Unexpected fault in Orv API or driver)"},
    {-2, "(OrvStartup() was not called before the current command)"},
    {-3, "(The designated instance (camera, feature etc.) cannot be found)"},
    {-4, "(The given handle is not valid)"},
    {-5, "(Device was not opened for usage)"},
    {-6, "(Operation is invalid with the current access mode)"},
    {-7, "(One of the parameters was invalid (usually an illegal pointer))"},
    {-8, "(The given struct size is not valid for this version of the API)"},
    {-9, "(More data was returned in a string/list than space was provided)"},
    {-10, "(The feature type for this access function was wrong)"},
    {-11, "(The value was not valid; either out of bounds or not an increment of the minimum)"},
    {-12, "(Timeout during wait)"},
    {-13, "(Other error)"},
    {-14, "(Resources not available (e.g memory))"},
    {-15, "(Call is invalid in the current context (e.g callback))"},
    {-16, "(No transport layers were found)"},
    {-17, "(API feature is not implemented)"},
    {-18, "(API feature is not supported)"},
    {-19, "(A multiple register read or write was partially completed)"},
    {-20, "(Low level IO error in transport layer)"},
    {-21, "(The valid value set could not be retrieved, since the feature does not provide this "
          "property)"},
    {-22, "(Unspecified GenTL runtime error)"},
    {-23, "(Unspecified runtime error)"},
    {-24, "(The responsible module/entity is busy executing actions)"},
    {-25, "(The function has no data to work on)"},
    {-26, "(An error occurred parsing a buffer containing chunk data)"},
    {-27, "(Something is already in use)"},
    {-28, "(Error condition unknown)"},
    {-29, "(Error parsing XML)"},
    {-30, "(Something is not available)"},
    {-31, "(Something is not initialized)"},
    {-32, "(The given address is out of range or invalid for internal reasons)"},
    {-33, "(Something has already been done)"},
    {-34, "(A frame expected to contain chunk data does not contain chunk data)"},
    {-35, "(A callback provided by the user threw an exception)"},
    {-36, "(The XML for the module is currently not loaded; the module could be in the wrong state "
          "or the XML could not be retrieved or could not be parsed properly)"},
    {-37, "(A required transport layer could not be found or loaded)"},
    {-38, "(An entity cannot be uniquely identified based on the information provided)"},
    {-39, "(Something could not be accomplished with a given number of retries)"},
    {-40, "(The operation requires more buffers)"},
    {1, "(The minimum error code to use for user defined error codes to avoid conflict with "
        "existing error codes)"},
    {7000, "<Viewer Timeout>"},
    {-41, undefined},
    {2, undefined},
    {1000, undefined},
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
