// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/RetriedTests.h"

#include <gmock/gmock.h>

/// For programs whose tests measure time.
int main(int count, char** arguments) {
    return runAgainAfterStalls([&] {
        testing::InitGoogleMock(&count, arguments);
        return RUN_ALL_TESTS();
    });
}
