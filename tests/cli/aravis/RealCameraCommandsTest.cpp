// SPDX-License-Identifier: BSD-3-Clause
#include "session/StreamingLimits.h"
#include "tests/cli/ProcessSignal.h"
#include "tests/cli/SpanletProcess.h"
#include "tests/cli/ValidFigures.h"
#include "tests/support/FakeCameraProcess.h"
#include "tests/support/FileTree.h"

#include <QFile>
#include <QThread>
#include <gmock/gmock.h>

#include <signal.h>

using testing::AnyOf;
using testing::HasSubstr;

namespace {

const std::string real = " --cameras genicam";

class CommandsOnRealCameras : public testing::Test {
protected:
    static long framesSent() { return std::stol(textOf("get Left TestFramesSent" + real)); }

    /// Whether the program has installed its handler of SIGINT.
    static bool isGuarded(const SpanletProcess& spanlet) {
        QFile status(QStringLiteral("/proc/%1/status").arg(spanlet.id()));
        EXPECT_TRUE(status.open(QIODevice::ReadOnly)) << "it has ended";
        const QByteArray text = status.readAll();
        const QByteArray mask = text.mid(text.indexOf("SigCgt:") + 8, 16);
        return text.isEmpty() || (mask.toULongLong(nullptr, 16) & 1U << (SIGINT - 1)) != 0;
    }

    static void interrupt(const SpanletProcess& spanlet) { sendSignal(spanlet, SIGINT); }

    const fakecamera::FakeCameraProcess left{"127.0.0.2", {"--serial", "L1", "--user-id", "Left"}};
    const fakecamera::FakeCameraProcess right{"127.0.0.3",
                                              {"--serial", "R2", "--user-id", "Right"}};
};

TEST_F(CommandsOnRealCameras, listsCamerasAndWarnsWhenReceiveBuffersAreSmall) {
    SpanletProcess spanlet(QStringLiteral("genicam"));
    EXPECT_EQ(spanlet.run("list --json"), 0);
    EXPECT_EQ(number(spanlet.json(), "simulated"), 0);
    const QJsonArray interfaces = spanlet.json()[QStringLiteral("interfaces")].toArray();
    ASSERT_EQ(interfaces.size(), 1);
    const QJsonObject interface = interfaces[0].toObject();
    EXPECT_EQ(at(interface, "id").toString(), QStringLiteral("lo"));
    EXPECT_EQ(at(interface, "type").toString(), QStringLiteral("GigE"));
    EXPECT_EQ(camera(interface, 0, "serialNumber name opened"), "L1 Left true");
    EXPECT_EQ(camera(interface, 1, "serialNumber name opened"), "R2 Right true");
    EXPECT_EQ(sumOf(interface, "bandwidthBytesPerSecond"), 250e6);

    const auto warning = session::receiveBufferWarning({2, 0}, session::streamingMemory());
    EXPECT_THAT(spanlet.err(), HasSubstr(warning ? warning->english() : ""));
    EXPECT_EQ(QByteArray::fromStdString(spanlet.err()).count("receive buffer"), warning ? 1 : 0);
}

TEST_F(CommandsOnRealCameras, areTheDefaultOfAnInstalledProgram) {
    const FileTree files;
    std::filesystem::create_directories(files.root() / "bin");
    std::filesystem::copy_file(SPANLET_FILE, files.root() / "bin/spanlet");
    const auto simulated = [&](const char* configuration) {
        files.write("user/spanlet.conf", configuration);
        SpanletProcess spanlet;
        spanlet.useConfiguration(QString::fromStdString((files.root() / "user").string()));
        spanlet.startFile(QString::fromStdString((files.root() / "bin/spanlet").string()),
                          words("list --names --json"));
        EXPECT_EQ(spanlet.finish(), 0) << spanlet.err();
        return number(spanlet.json(), "simulated") == 1;
    };
    EXPECT_TRUE(simulated("")) << "as in the build folder";
    EXPECT_FALSE(simulated("cameras=genicam\n"));
    std::filesystem::create_directories(files.root() / "share/spanlet");
    std::filesystem::copy_file(DEFAULTS_FILE, files.root() / "share/spanlet/defaults.conf");
    EXPECT_FALSE(simulated(""));
    EXPECT_TRUE(simulated("cameras=simulated\n"));
}

TEST_F(CommandsOnRealCameras, writesAndReadsAllFeaturesOrNothing) {
    EXPECT_EQ(textOf("set Left TestSigned -5 TestFloat -1.5 TestString Förderband TestMACAddress "
                     "02:00:00:00:00:07 PixelFormat Mono12" +
                     real),
              "TestSigned = -5\nTestFloat = -1.5\nTestString = Förderband\n"
              "TestMACAddress = 02:00:00:00:00:07\nPixelFormat = Mono12\n");
    // One name or value is wrong.
    for (const char* rest : {"Hieght 480", "Height tall"}) {
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run(std::string("set Left Width 640 ") + rest + real), 1) << rest;
    }
    EXPECT_EQ(textOf("get Left TestSigned TestFloat TestString TestMACAddress PayloadSize" + real),
              "-5\n-1.5\nFörderband\n02:00:00:00:00:07\n2097152\n");
}

TEST_F(CommandsOnRealCameras, closesCamerasWhenABenchmarkIsInterrupted) {
    SpanletProcess opening;
    opening.start(words("benchmark --interface lo --seconds 60" + real));
    while (!isGuarded(opening))
        QThread::yieldCurrentThread();
    interrupt(opening);
    EXPECT_EQ(opening.finish(), 1);
    EXPECT_THAT(opening.err(), HasSubstr("spanlet: Interrupted."));
    EXPECT_EQ(framesSent(), 0);

    SpanletProcess running;
    running.start(words("benchmark --interface lo --seconds 60 --json --interval 1" + real));
    running.await("\"interval\"");
    interrupt(running);
    EXPECT_EQ(running.finish(), 0);
    EXPECT_GT(framesSent(), 0);
}

TEST_F(CommandsOnRealCameras, areObservedWhileAnotherProgramReceives) {
    const fakecamera::FakeCameraProcess dropping{"127.0.0.4",
                                                 {"--drop-every", "500", "--skip-every", "20"}};
    const FileTree files;
    const std::string file = (files.root() / "lost.pcapng").string();
    for (const std::string& example : matches(textOf("help observe"), "^  spanlet (.+)$"))
        EXPECT_THAT(textOf(example), AnyOf(HasSubstr("No stream"), HasSubstr("\"cameras\":[]")));
    SpanletProcess observer;
    observer.start(words("observe --interface lo --interval 1 --seconds 9 --json --pcap " + file));
    observer.await("interval");
    SpanletProcess receiver;
    ASSERT_EQ(receiver.run("benchmark --interface lo --seconds 4 --json" + real), 0);
    ASSERT_EQ(observer.finish(), 0) << observer.err();
    const std::string lines = observer.out();
    expectValidFigures(lines);
    const std::string last = matches(lines, "^(.+)$").back();
    const QJsonObject seen = QJsonDocument::fromJson(QByteArray::fromStdString(last)).object();
    EXPECT_EQ(number(seen, "observerMissedPackets"), 0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(camera(seen, i, "id name serialNumber"),
                  camera(receiver.json(), i, "id name serialNumber"));
        const QJsonObject stream = camerasOf(seen).at(i).toObject();
        const QJsonObject received = camerasOf(receiver.json()).at(i).toObject();
        // The stream is found within 0.3 s; the benchmark counts until just before it stops.
        EXPECT_NEAR(number(stream, "receivedFrames"), number(received, "receivedFrames"),
                    3 + 0.3 * number(received, "framesPerSecond"));
        EXPECT_EQ(number(stream, "lostFrames") > 0, i == 2);
        EXPECT_EQ(number(stream, "incompleteFrames"), 0);
        EXPECT_GT(number(stream, "frameSeconds"), 0);
        EXPECT_GT(number(stream, "silentSeconds"), 1) << "the benchmark has ended";
        const double resent = number(received, "packetsResent");
        // One that comes again within a millisecond does not count as resent for the observer.
        EXPECT_LE(number(stream, "packetsResent"), 5 + 1.2 * resent);
        EXPECT_GE(number(stream, "packetsResent"), resent / 2 - 5);
        EXPECT_EQ(resent > 100, i == 2) << "the third camera drops packets";
    }
    const QJsonObject capture = seen[QStringLiteral("capture")].toObject();
    EXPECT_EQ(capture[QStringLiteral("file")].toString().toStdString(), file);
    EXPECT_GT(number(capture, "writtenAfterSeconds"), 3) << "once more at the end";
    EXPECT_GT(std::filesystem::file_size(file), 10'000U);
    EXPECT_EQ(SpanletProcess().run("observe --interface nothing"), 2);
    EXPECT_NE(SpanletProcess().run("observe --interface usbmon9999"), 0);
    SpanletProcess wrong;
    EXPECT_EQ(wrong.run("observe --interface usbmon1 --pcap " + file), 2);
    EXPECT_EQ(wrong.run("observe --interface lo --pcap /none/lost.pcapng"), 2);
    EXPECT_THAT(wrong.err(), HasSubstr("\"/none/lost.pcapng\": there is no such folder."));
}

TEST_F(CommandsOnRealCameras, putsLimitsBackWhenACalibrationIsInterrupted) {
    const std::string limit = "DeviceLinkThroughputLimit";
    textOf("set Left " + limit + " 7000000" + real);
    SpanletProcess running;
    running.start(words("calibrate --interface lo --seconds 60 --verbose" + real));
    running.await("Frames come through");
    interrupt(running);
    EXPECT_EQ(running.finish(), 1);
    EXPECT_THAT(running.err(), HasSubstr("spanlet: Interrupted: the limits were put back."));
    EXPECT_EQ(textOf("get Left " + limit + real), "7000000\n");
    EXPECT_EQ(textOf("get Right " + limit + real), "125000000\n");
    EXPECT_GT(framesSent(), 0);
}

TEST_F(CommandsOnRealCameras, countWhatALockedOneSendsWhoseLimitIsOff) {
    const std::string limit = "DeviceLinkThroughputLimit";
    textOf("set Left " + limit + " 5000000 " + limit + "Mode Off" + real);
    const QJsonObject plan =
        at(jsonOf("plan --interface lo --lock Left --max-bandwidth 200" + real), "links 0")
            .toJsonObject();
    EXPECT_EQ(camera(plan, 0, "role bandwidthBytesPerSecondAutoSet"), "fixed ");
    const double sent = number(plan, "cameras 0 needBytesPerSecond");
    EXPECT_GT(sent, 20e6);
    EXPECT_NEAR(number(plan, "cameras 1 bandwidthBytesPerSecondPlan"), 180e6 - sent, 1e3);
    const QJsonArray listed = jsonOf("list" + real)[QStringLiteral("interfaces")].toArray();
    EXPECT_NEAR(listed[0][QStringLiteral("bandwidthBytesPerSecond")].toDouble(), 125e6 + sent,
                0.1 * sent);
    EXPECT_EQ(textOf("get Left " + limit + " " + limit + "Mode" + real), "5000000\nOff\n");
}

TEST_F(CommandsOnRealCameras, countsPacketsAndKeepsTheCountsOfACameraThatIsUnplugged) {
    fakecamera::FakeCameraProcess third{
        "127.0.0.4", {"--serial", "T3", "--limit", "20000000", "--drop-every", "50"}};
    SpanletProcess spanlet;
    spanlet.start(words("watch --interface lo --seconds 9 --interval 1 --json" + real));
    spanlet.await("\"interval\"");
    third.kill();
    EXPECT_EQ(spanlet.finish(), 1);
    const QJsonArray lines = spanlet.jsonLines();
    ASSERT_GE(lines.size(), 5);
    const QJsonObject interval = lines[lines.size() - 2].toObject();
    const QJsonObject result = lines[lines.size() - 1].toObject();
    EXPECT_EQ(camera(interval, 2, "serialNumber measured framesPerSecond"), "T3 false 0");
    EXPECT_GT(number(interval, "cameras 2 packetsResent"), 10);
    EXPECT_EQ(camera(interval, 2, "packetsResent receivedFrames"),
              camera(result, 2, "packetsResent receivedFrames"));
    EXPECT_NEAR(number(result, "cameras 2 disconnectedAfterSeconds"), 1.5, 0.7);
    EXPECT_EQ(camera(result, 0, "measured"), "true");
    EXPECT_EQ(number(result, "total packetsResent"), sumOf(result, "packetsResent"));
}

TEST(SetIp, runsItsExamplesAsTyped) {
    const fakecamera::FakeCameraProcess camera("127.0.0.2");
    const Texts examples = matches(textOf("help set-ip"), "^  spanlet (.+)$");
    EXPECT_GE(examples.size(), 3U);
    for (const std::string& example : examples)
        EXPECT_THAT(textOf(example), HasSubstr("DEV_02FC7F000002 on lo: ")) << example;
    const std::string tried = textOf("set-ip FC0001 127.0.0.30 --dry-run");
    EXPECT_THAT(tried, HasSubstr("127.0.0.2/8 -> 127.0.0.30/8, until"));
    EXPECT_EQ(textOf("set-ip FC0001 127.0.0.30 --dry-run"), tried) << "not done";
}

TEST(SetIp, refusesSimulatedCamerasAndOnesInUse) {
    const fakecamera::FakeCameraProcess camera("127.0.0.2");
    SpanletProcess other;
    other.start(words("watch --all --json" + real));
    other.await("\"interval\"");
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("set-ip FC0001 127.0.0.9"), 1);
    EXPECT_THAT(spanlet.err(), HasSubstr("is in use by a program on 127.0.0.1."));
    sendSignal(other, SIGINT);
    other.finish();
    for (const char* option : {" --cameras simulated", " --config :faulty"})
        EXPECT_EQ(SpanletProcess().run(std::string("set-ip FC0001 auto") + option), 2) << option;
}

} // namespace
