// SPDX-License-Identifier: BSD-3-Clause
#include <QApplication>
#include <gmock/gmock.h>

/// Runs a test program's tests inside a widgets application, without a display unless
/// QT_QPA_PLATFORM asks for one. Set here and not only for ctest, since the build runs the program
/// too, to list its tests.
int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    testing::InitGoogleMock(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
