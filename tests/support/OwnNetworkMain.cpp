// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/OwnNetwork.h"
#include "tests/support/RetriedTests.h"

#include <gmock/gmock.h>

int main(int count, char** arguments) {
    return runAgainAfterStalls([&] {
        if (!fakecamera::enterOwnNetwork())
            fakecamera::waitForHostNetwork();
        testing::InitGoogleMock(&count, arguments);
        return RUN_ALL_TESTS();
    });
}
