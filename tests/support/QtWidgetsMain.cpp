// SPDX-License-Identifier: BSD-3-Clause
#include <QApplication>
#include <gmock/gmock.h>

/// Runs a test program's tests inside a widgets application.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
