// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ObservedUsbBus.h"
#include "cli/Failure.h"
#include "cli/UsbBuses.h"
#include "tests/cli/ValidFigures.h"
#include "tests/observer/UsbScript.h"
#include "tests/support/FileTree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gmock/gmock.h>
#include <qtestsupport_core.h>

#include <chrono>
#include <filesystem>

namespace cli {

namespace {

using testing::AllOf;
using testing::HasSubstr;

class UsbBuses : public testing::Test {
protected:
    UsbBuses() {
        addDevice("usb2", "1", "0", "10000");
        addDevice("2-1", "7", "1", "480");
    }

    void addDevice(const std::string& folder, const char* number, const char* ports,
                   const char* speed) const {
        const auto device = std::filesystem::path("sys/bus/usb/devices") / folder;
        for (const auto& [file, text] : {std::pair("busnum", "2"),
                                         {"devnum", number},
                                         {"devpath", ports},
                                         {"speed", speed},
                                         {"product", "Camera"},
                                         {"serial", ports},
                                         {"x:1.0/bInterfaceClass", "ef"},
                                         {"x:1.0/bInterfaceSubClass", "05"},
                                         {"x:1.0/bInterfaceProtocol", "00"}})
            files.write(device / file, std::string(text) + '\n');
    }

    const FileTree files;
};

TEST_F(UsbBuses, areObservedAsAdaptersAre) {
    auto monitor = std::make_unique<usbscript::Monitor>();
    for (std::uint64_t id : {0U, 1U, 2U, 4U})
        monitor->sendFrame(id);
    usbscript::Event unknown;
    unknown.device = 9;
    monitor->sendFrame(0, unknown);
    monitor->dropped = 5;
    monitor->time += std::chrono::seconds(3);
    ObservedUsbBus bus(QStringLiteral("usbmon2"), std::move(monitor), files.root() / "sys");
    QJsonObject seen;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        seen = bus.interval();
        return seen[QStringLiteral("cameras")].toArray().size() == 2;
    }));
    EXPECT_EQ(bus.takeNotices(), QStringList());
    std::filesystem::remove_all(files.root() / "sys/bus/usb/devices/2-1");
    std::filesystem::remove_all(files.root() / "sys/bus/usb/devices/usb2");
    QJsonObject result = bus.result();
    for (const QJsonObject& document : {seen, result}) {
        EXPECT_EQ(document[QStringLiteral("interface")], QStringLiteral("usbmon2"));
        EXPECT_EQ(document[QStringLiteral("observerMissedPackets")], 5);
        const QJsonObject total = document[QStringLiteral("total")].toObject();
        EXPECT_EQ(total[QStringLiteral("bitsPerSecond")], 10e9);
        const QJsonArray rows = document[QStringLiteral("cameras")].toArray();
        const QJsonObject camera = rows[0].toObject();
        EXPECT_EQ(camera[QStringLiteral("id")], QStringLiteral("1"));
        EXPECT_EQ(camera[QStringLiteral("model")], QStringLiteral("Camera"));
        EXPECT_EQ(camera[QStringLiteral("receivedFrames")], 4);
        EXPECT_EQ(camera[QStringLiteral("lostFrames")], 1);
        EXPECT_NEAR(camera[QStringLiteral("frameSeconds")].toDouble(), 300e-6, 1e-9);
        EXPECT_NEAR(camera[QStringLiteral("silentSeconds")].toDouble(), 3.0004, 1e-6);
        EXPECT_GT(camera[QStringLiteral("linkPercent")].toDouble(), 0);
        EXPECT_FALSE(camera.contains(QStringLiteral("packetsMissing"))) << "they have no numbers";
        EXPECT_EQ(rows[1].toObject()[QStringLiteral("id")], QStringLiteral("2:9"));
    }
    EXPECT_THAT(bus.takeNotices().join(QLatin1Char('\n')).toStdString(),
                HasSubstr("The USB bus usbmon2 was removed."));
    bus.interval();
    EXPECT_EQ(bus.takeNotices(), QStringList());
    const QJsonValue finding = result[QStringLiteral("findings")].toArray().at(0);
    EXPECT_EQ(finding[QStringLiteral("place")], QStringLiteral("usb"));
    EXPECT_THAT(finding[QStringLiteral("evidence")].toString().toStdString(),
                HasSubstr("480 Mbit/s"));
    result[QStringLiteral("type")] = QStringLiteral("result");
    result[QStringLiteral("simulated")] = result[QStringLiteral("interrupted")] = false;
    result[QStringLiteral("seconds")] = 1;
    expectValidFigures(QJsonDocument(result).toJson(QJsonDocument::Compact).toStdString());
}

TEST_F(UsbBuses, continueTheRowOfACameraThatIsPluggedInAgain) {
    auto monitor = std::make_unique<usbscript::Monitor>();
    for (std::uint64_t id = 0; id < 3; ++id)
        monitor->sendFrame(id);
    usbscript::Event again;
    again.device = 8;
    for (std::uint64_t id = 0; id < 2; ++id)
        monitor->sendFrame(id, again);
    ObservedUsbBus bus(QStringLiteral("usbmon2"), std::move(monitor), files.root() / "sys");
    const auto rows = [&bus] {
        return bus.interval()[QStringLiteral("cameras")].toArray();
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return rows().size() == 2; }));
    rows();
    addDevice("2-1", "8", "1", "480");
    for (const auto& [document, isResult] :
         {std::pair(bus.interval(), false), {bus.result(), true}}) {
        const QJsonArray cameras = document[QStringLiteral("cameras")].toArray();
        ASSERT_EQ(cameras.size(), 1);
        EXPECT_EQ(cameras[0][QStringLiteral("address")], QStringLiteral("2:8"));
        EXPECT_EQ(cameras[0][QStringLiteral("receivedFrames")], 5);
        EXPECT_EQ(cameras[0][QStringLiteral("framesPerSecond")].toDouble() > 0, isResult);
        EXPECT_EQ(cameras[0][QStringLiteral("frameSeconds")].isDouble(), isResult);
    }
}

TEST_F(UsbBuses, tellWhatToDoWhereTheyCannotBeObserved) {
    const auto failure = [&](const char* bus) {
        try {
            openUsbBus(QString::fromLatin1(bus), files.root());
        } catch (const Failure& refused) {
            return std::string(refused.what());
        }
        return std::string();
    };
    EXPECT_TRUE(usbBuses(files.root()).isEmpty());
    EXPECT_THAT(failure("usbmon2"), HasSubstr("sudo modprobe usbmon"));
    EXPECT_THAT(
        unobservedUsbCameras({}, files.root()).join(QLatin1Char('\n')).toStdString(),
        AllOf(HasSubstr("\"Camera 1\" (usbmon2) is not observed"), HasSubstr("modprobe usbmon")));
    files.write("sys/module/usbmon/refcnt", "0");
    EXPECT_THAT(failure("usbmon2"), HasSubstr("PrivateDevices=no"));
    EXPECT_THAT(unobservedUsbCameras({}, files.root()).join(QLatin1Char('\n')).toStdString(),
                HasSubstr("DeviceAllow=/dev/usbmon2 r"));
    for (const char* file : {"dev/usbmon0", "dev/usbmon2", "dev/usbmon12", "dev/usbmon", "dev/tty"})
        files.write(file, "");
    EXPECT_EQ(usbBuses(files.root()),
              QStringList({QStringLiteral("usbmon12"), QStringLiteral("usbmon2")}));
    EXPECT_EQ(failure("usbmon12"), "") << "a file that may be read";
    EXPECT_EQ(failure("usbmon7"), "There is no USB bus \"usbmon7\". There is: usbmon12, usbmon2.");
    EXPECT_TRUE(unobservedUsbCameras({QStringLiteral("usbmon2")}, files.root()).isEmpty());
}

} // namespace

} // namespace cli
