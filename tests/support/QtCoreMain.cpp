// SPDX-License-Identifier: BSD-3-Clause
#include <QCoreApplication>
#include <gmock/gmock.h>

/// Runs a test program's tests inside an application without a display.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
