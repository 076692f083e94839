// SPDX-License-Identifier: BSD-3-Clause
#include "session/StreamingLimits.h"
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FakeCameraProcess.h"

#include <QFile>
#include <QThread>
#include <gmock/gmock.h>

#include <signal.h>

using testing::HasSubstr;

namespace {

class CommandsOnRealCameras : public testing::Test {
protected:
    static QStringList words(const char* line) {
        return QString::fromUtf8(line).split(QLatin1Char(' ')) +
               QStringList{QStringLiteral("--cameras"), QStringLiteral("genicam")};
    }

    /// The output of a successful command.
    static std::string text(const char* line) {
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run(words(line)), 0) << line << ": " << spanlet.err().toStdString();
        return spanlet.out().toStdString();
    }
    static QJsonObject json(const char* line) {
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run(words(line) + QStringList(QStringLiteral("--json"))), 0)
            << line << ": " << spanlet.err().toStdString();
        return spanlet.json();
    }
    static long framesSent() { return std::stol(text("get Left TestFramesSent")); }

    /// Whether the program has installed its handler of SIGINT.
    static bool isGuarded(const SpanletProcess& spanlet) {
        QFile status(QStringLiteral("/proc/%1/status").arg(spanlet.id()));
        if (!status.open(QIODevice::ReadOnly)) {
            ADD_FAILURE() << "it has ended";
            return true;
        }
        const QByteArray text = status.readAll();
        const QByteArray mask = text.mid(text.indexOf("SigCgt:") + 8, 16);
        return (mask.toULongLong(nullptr, 16) & 1U << (SIGINT - 1)) != 0;
    }

    static void interrupt(const SpanletProcess& spanlet) {
        ::kill(static_cast<pid_t>(spanlet.id()), SIGINT);
    }

    const fakecamera::FakeCameraProcess left{"127.0.0.2", {"--serial", "L1", "--user-id", "Left"}};
    const fakecamera::FakeCameraProcess right{"127.0.0.3",
                                              {"--serial", "R2", "--user-id", "Right"}};
};

TEST_F(CommandsOnRealCameras, listsCamerasAndWarnsWhenReceiveBuffersAreSmall) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(words("list --json")), 0);
    const QJsonArray interfaces = spanlet.json()[QStringLiteral("interfaces")].toArray();
    ASSERT_EQ(interfaces.size(), 1);
    EXPECT_EQ(interfaces[0][QStringLiteral("id")].toString(), QStringLiteral("lo"));
    EXPECT_EQ(interfaces[0][QStringLiteral("type")].toString(), QStringLiteral("GigE"));
    const QJsonArray cameras = camerasOf(interfaces[0].toObject());
    ASSERT_EQ(cameras.size(), 2);
    EXPECT_EQ(cameras[0][QStringLiteral("serialNumber")].toString(), QStringLiteral("L1"));
    EXPECT_EQ(cameras[1][QStringLiteral("name")].toString(), QStringLiteral("Right"));
    EXPECT_TRUE(cameras[1][QStringLiteral("opened")].toBool());
    EXPECT_EQ(sumOf(interfaces[0].toObject(), "bandwidthBytesPerSecond"), 250e6);

    const auto warning = session::receiveBufferWarning({2, 0}, session::streamingMemory());
    EXPECT_EQ(spanlet.err().count("receive buffer"), warning ? 1 : 0);
    EXPECT_THAT(spanlet.err().toStdString(), HasSubstr(warning.value_or("")));
}

TEST_F(CommandsOnRealCameras, writesAndReadsFeaturesOfEachType) {
    EXPECT_EQ(text("set Left TestSigned -5 TestFloat -1.5 TestBoolean on TestString Förderband "
                   "TestEnumeration Second TestHexNumber 0xff TestIPV4Address 10.0.0.7 "
                   "TestMACAddress 02:00:00:00:00:07 Width 640 PixelFormat Mono12"),
              "TestSigned = -5\nTestFloat = -1.5\nTestBoolean = true\nTestString = Förderband\n"
              "TestEnumeration = Second\nTestHexNumber = 0xff\nTestIPV4Address = 10.0.0.7\n"
              "TestMACAddress = 02:00:00:00:00:07\nWidth = 640\nPixelFormat = Mono12\n");
    EXPECT_EQ(text("get Left TestSigned TestFloat TestBoolean TestString TestEnumeration "
                   "TestHexNumber TestIPV4Address TestMACAddress PayloadSize"),
              "-5\n-1.5\ntrue\nFörderband\nSecond\n0xff\n10.0.0.7\n02:00:00:00:00:07\n1310720\n");
    EXPECT_THAT(text("features Left --filter"), HasSubstr("\nDeviceLinkThroughputLimit "));
    EXPECT_EQ(text("run Left TestCommand"), "TestCommand done\n");
}

TEST_F(CommandsOnRealCameras, writesNothingWhenOneNameOrValueIsWrong) {
    for (const char* line : {"set Left Width 640 Hieght 480", "set Left Width 640 Height tall"}) {
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run(words(line)), 1) << line;
    }
    EXPECT_EQ(text("get Left Width"), "1024\n");
}

TEST_F(CommandsOnRealCameras, countsFramesOfTheBenchmark) {
    const QJsonObject result = json("benchmark --interface lo --seconds 1");
    ASSERT_EQ(camerasOf(result).size(), 2);
    const QJsonValue camera = camerasOf(result)[0];
    const double received = camera[QStringLiteral("receivedFrames")].toDouble();
    const double sent = camera[QStringLiteral("sentFrames")].toDouble();
    EXPECT_GT(received, 10);
    EXPECT_EQ(received + camera[QStringLiteral("lostFrames")].toDouble(), sent);
    EXPECT_EQ(camera[QStringLiteral("payloadBytes")].toDouble(), received * 1024 * 1024);
    // One may be under way when the camera is stopped.
    EXPECT_NEAR(static_cast<double>(framesSent()), sent, 1);
}

TEST_F(CommandsOnRealCameras, stopsAndClosesCamerasWhenABenchmarkIsInterrupted) {
    SpanletProcess spanlet;
    spanlet.start(words("benchmark --interface lo --seconds 60 -v"));
    spanlet.await("DEV_02FC7F000003): Acquisition started successfully.");
    interrupt(spanlet);
    EXPECT_EQ(spanlet.finish(), 0);
    const long sent = framesSent();
    EXPECT_GT(sent, 0);
    EXPECT_EQ(framesSent(), sent);
}

TEST_F(CommandsOnRealCameras, closesCamerasWhenTheirOpeningIsInterrupted) {
    SpanletProcess spanlet;
    spanlet.start(words("benchmark --interface lo --seconds 60"));
    while (!isGuarded(spanlet))
        QThread::yieldCurrentThread();
    interrupt(spanlet);
    EXPECT_EQ(spanlet.finish(), 1);
    EXPECT_THAT(spanlet.err().toStdString(), HasSubstr("spanlet: Interrupted."));
    EXPECT_EQ(framesSent(), 0);
}

TEST_F(CommandsOnRealCameras, failsForCamerasThatAnotherProgramHasOpen) {
    SpanletProcess other;
    other.start(words("watch --interface lo --interval 0.1"));
    other.await("DEV_02FC7F000003");
    for (const char* line : {"get Left Width", "autoset --camera Left"}) {
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run(words(line)), 1) << line;
        EXPECT_THAT(spanlet.err().toStdString(),
                    HasSubstr("spanlet: DEV_02FC7F000002: Camera cannot be opened in FULL ACCESS"));
    }
    interrupt(other);
    EXPECT_EQ(other.finish(), 0);
    EXPECT_EQ(text("get Left Width"), "1024\n");
}

TEST_F(CommandsOnRealCameras, stopsCamerasWhenTheOutputPipeIsClosed) {
    QProcess shell;
    shell.start(QStringLiteral("bash"),
                {QStringLiteral("-c"), QStringLiteral("set -o pipefail; " SPANLET_FILE
                                                      " watch --cameras genicam --interval 0.1"
                                                      " | head -2 > /dev/null")});
    EXPECT_TRUE(shell.waitForFinished(20000));
    EXPECT_EQ(shell.exitCode(), 1);
    const long sent = framesSent();
    EXPECT_EQ(framesSent(), sent);
}

} // namespace
