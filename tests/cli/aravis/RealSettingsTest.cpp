// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/ProcessSignal.h"
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FakeCameraProcess.h"
#include "tests/support/FileTree.h"

#include <QFile>
#include <QThread>
#include <gmock/gmock.h>

#include <csignal>

namespace {

/// A camera that forgets its settings when it ends.
class RealSettings : public testing::Test {
protected:
    static QStringList arguments(const std::string& line) {
        return words(line + " --cameras genicam");
    }
    static void run(const std::string& line, int expected = 0) {
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run(arguments(line)), expected) << spanlet.err() << spanlet.out();
    }
    static void change() {
        run(std::string(
            "set A1 Width 800 OffsetX 200 TriggerSelector AcquisitionStart TriggerMode On "
            "TriggerSource Line1 AcquisitionFrameRateEnable true AcquisitionFrameRate 12.5 "
            "TestSelector 2 TestSelected 77 TestSwitch true TestSwitched 5 TestFloat 1.25 "
            "TestThirdIsAvailable true TestEnumeration Third TestMACAddress "
            "02:ab:00:00:00:1f DeviceLinkThroughputLimit 50000000"));
    }
    /// The saved features of the camera, as text.
    std::string saved(const char* name) const {
        run("save " + path(name));
        QFile file(QString::fromStdString(path(name)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QJsonObject document = QJsonDocument::fromJson(file.readAll()).object();
        const QJsonObject only = camerasOf(document).at(0).toObject();
        return QJsonDocument(only).toJson().toStdString();
    }
    std::string path(const char* name) const { return (m_files.root() / name).string(); }

    const FileTree m_files;
};

TEST_F(RealSettings, returnWithTheCamera) {
    fakecamera::FakeCameraProcess camera(fakecamera::onlyAddress, {"--serial", "A1"});
    const std::string factory = saved("factory.json");
    change();
    const std::string wanted = saved("wanted.json");
    EXPECT_NE(wanted, factory);
    SpanletProcess watch;
    watch.start(arguments("restore " + path("wanted.json") + " --watch --json"));
    watch.await("\"changed\":0");
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue("SPANLET_POWER_CYCLES", &isGiven);
    for (int cycle = 1; cycle <= (isGiven ? given : 2); ++cycle) {
        camera.kill();
        watch.await("\"it is missing\"");
        camera.restart();
        watch.await("\"changed\":16");
        EXPECT_EQ(saved("again.json"), wanted);
        watch.forget(); // the next cycle prints the same
    }
    sendSignal(watch, SIGINT);
    EXPECT_EQ(watch.finish(), 0);
    EXPECT_EQ(textOf("get A1 DeviceRegistersValid --cameras genicam"), "true\n");
}

TEST_F(RealSettings, staysUsableWhenTheUserInterrupts) {
    fakecamera::FakeCameraProcess camera(fakecamera::onlyAddress, {"--serial", "A1"});
    change();
    saved("wanted.json");
    camera.kill();
    const fakecamera::FakeCameraProcess slow(fakecamera::onlyAddress,
                                             {"--serial", "A1", "--answer-delay", "5"});
    for (const unsigned long milliseconds : {1500UL, 2000UL}) {
        SpanletProcess restore;
        restore.start(arguments("restore " + path("wanted.json")));
        QThread::msleep(milliseconds);
        sendSignal(restore, SIGINT);
        EXPECT_EQ(restore.finish(), 1) << restore.out();
        EXPECT_EQ(textOf("get A1 DeviceRegistersValid --cameras genicam"), "true\n")
            << milliseconds;
    }
    run("restore " + path("wanted.json"));
}

TEST_F(RealSettings, surviveThePowerInAUserSet) {
    const std::vector<std::string> options{"--serial", "A1", "--user-sets", path("sets")};
    fakecamera::FakeCameraProcess camera(fakecamera::onlyAddress, options);
    change();
    run("save " + path("wanted.json") + " A1 --to-camera UserSet2");
    camera.restart();
    run("restore " + path("wanted.json") + " --dry-run");
    run("set A1 UserSetSelector Default");
    run("run A1 UserSetLoad");
    run("restore " + path("wanted.json") + " --dry-run", 1);
    run("save " + path("other.json") + " A1 --to-camera Default", 1);
}

} // namespace
