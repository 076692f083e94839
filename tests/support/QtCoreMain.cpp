// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/RetriedTests.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

/// Runs a test program's tests inside an application without a display.
int main(int argc, char** argv) {
    return runAgainAfterStalls([&] {
        testing::InitGoogleMock(&argc, argv);
        // The user's configuration files are none of the tests'.
        for (const char* folder : {"SPANLET_CONFIG_HOME", "XDG_CONFIG_DIRS"})
            qputenv(folder, "/nonexistent");
        QCoreApplication application(argc, argv);
        return RUN_ALL_TESTS();
    });
}
