// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/OwnNetwork.h"
#include "tests/support/RetriedTests.h"

#include <QApplication>
#include <gmock/gmock.h>

/// For tests of widgets with fake cameras.
int main(int count, char** arguments) {
    return runAgainAfterStalls([&] {
        if (!fakecamera::enterOwnNetwork())
            fakecamera::waitForHostNetwork();
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        testing::InitGoogleMock(&count, arguments);
        const QApplication application(count, arguments);
        return RUN_ALL_TESTS();
    });
}
