// SPDX-License-Identifier: BSD-3-Clause
// The viewer on a camera that it reaches over the network.
#include "session/SdkSession.h"
#include "tests/support/FakeCameraProcess.h"
#include "tests/support/WidgetParts.h"
#include "viewer/ViewerWindow.h"

#include <QTest>
#include <QtWidgets>
#include <gtest/gtest.h>

namespace {

TEST(RealLosses, areExplainedByThePacketsOfTheStream) {
    const fakecamera::FakeCameraProcess camera(fakecamera::onlyAddress,
                                               {"--width", "640", "--height", "400", "--frame-rate",
                                                "50", "--loss", "1", "--resend", "0"});
    const session::SdkSession session(session::CameraSource{QStringLiteral(":genicam")});
    ASSERT_TRUE(session.isStarted()) << session.error().toStdString();
    viewer::ViewerWindow window(session.system(), QStringLiteral("/nowhere"));
    window.show();
    const auto& losses = partOf<QLabel>(window, "labelLostFrames");
    // The adapter's counters tell whether the packets reached it; this network has none.
    const auto tellsPackets = [&losses] {
        static const QRegularExpression pattern(
            QStringLiteral("^Where frames were lost: .* [1-9][0-9]* packets (never reached the "
                           "adapter lo|went astray)"));
        return pattern.match(losses.text()).hasMatch();
    };
    EXPECT_TRUE(QTest::qWaitFor(tellsPackets, 20000)) << losses.text().toStdString();
}

} // namespace
