// SPDX-License-Identifier: BSD-3-Clause
#include "session/StreamingLimits.h"
#include "session/UsbAccess.h"

#include "tests/support/CapturedLog.h"
#include "tests/support/FileTree.h"
#include "tests/support/SdkFixture.h"

#include <QString>

namespace {

using session::StreamingMemory;
using namespace testing;

constexpr std::uint64_t wholeBuffer = 33'554'432;

TEST(StreamingLimits, warnsOfUsbMemoryBelowWhatTheCamerasNeed) {
    const struct {
        std::size_t cameras;
        std::optional<std::uint64_t> megabytes;
        bool warns;
    } cases[] = {
        {1, 16, false}, {2, 16, true}, {3, 48, false},           {3, 47, true},
        {0, 8, false},  {9, 0, false}, {9, std::nullopt, false},
    };
    for (const auto& each : cases) {
        const auto warning = session::usbMemoryWarning({8, each.cameras}, {each.megabytes, 0});
        EXPECT_EQ(warning.has_value(), each.warns) << each.cameras;
    }
    EXPECT_THAT(
        session::usbMemoryWarning({0, 3}, {16, wholeBuffer})->english(),
        AllOf(HasSubstr("48 MB"), HasSubstr("allows 16 MB"),
              HasSubstr("echo 48 | sudo tee /sys/module/usbcore/parameters/usbfs_memory_mb")));
}

TEST(StreamingLimits, warnsOfAReceiveBufferBelowWhatAStreamAsksFor) {
    EXPECT_THAT(session::receiveBufferWarning({1, 0}, {16, wholeBuffer - 1})->english(),
                AllOf(HasSubstr("sudo sysctl -w net.core.rmem_max=33554432"),
                      ContainsRegex("sudo setcap cap_net_raw\\+ep /.*test_session")));
    EXPECT_FALSE(session::receiveBufferWarning({1, 0}, {16, 212'992, true})) << "a packet ring";
    EXPECT_FALSE(session::receiveBufferWarning({9, 0}, {16, wholeBuffer}));
    EXPECT_FALSE(session::receiveBufferWarning({0, 9}, {0, 212'992}));
    EXPECT_FALSE(session::receiveBufferWarning({1, 0}, {16, std::nullopt}));
}

/// A USB device with two interfaces, the second one of a class such as "ef0500", and without a
/// device file.
void addUsbDevice(const FileTree& files, const std::string& port, const char* number,
                  const std::string& interfaceClass) {
    const auto device = std::filesystem::path("sys/bus/usb/devices") / port;
    const auto interface = device / (port + ":1.1");
    files.write(device / "busnum", "2\n");
    files.write(device / "devnum", number);
    files.write(device / "product", "Camera\n");
    files.write(device / "serial", number);
    files.write(device / (port + ":1.0/bInterfaceClass"), "ff\n");
    files.write(interface / "bInterfaceClass", interfaceClass.substr(0, 2) + '\n');
    files.write(interface / "bInterfaceSubClass", interfaceClass.substr(2, 2) + '\n');
    files.write(interface / "bInterfaceProtocol", interfaceClass.substr(4) + '\n');
}

TEST(UsbAccess, namesTheCamerasThatCannotBeOpened) {
    const FileTree files;
    EXPECT_FALSE(session::usbAccessWarning(session::closedUsbCameras(files.root()))) << "no USB";
    addUsbDevice(files, "2-1", "7", "ef0500");
    addUsbDevice(files, "2-2.4", "12", "ef0500");
    addUsbDevice(files, "2-3", "13", "0e0100");
    files.write("dev/bus/usb/002/012", "descriptors");

    const auto closed = session::closedUsbCameras(files.root());
    ASSERT_EQ(closed.size(), 1U) << "the second may be opened, the third is a webcam";
    EXPECT_EQ(closed[0].name, "Camera 7");
    EXPECT_EQ(closed[0].file, "/dev/bus/usb/002/007");
    EXPECT_THAT(session::usbAccessWarning(closed)->english(),
                AllOf(HasSubstr("Camera 7 (/dev/bus/usb/002/007)"),
                      HasSubstr("ENV{ID_USB_INTERFACES}==\"*:ef0500:*\"")));
    EXPECT_EQ(std::ifstream(files.root() / "dev/bus/usb/002/012").peek(), 'd') << "left as it was";
}

TEST(StreamingLimits, warnsOnceForRealCameras) {
    const FileTree files;
    files.write("sys/module/usbcore/parameters/usbfs_memory_mb", "16\n");
    files.write("proc/sys/net/core/rmem_max", "212992\n");
    addUsbDevice(files, "2-1", "7", "ef0500");
    session::StreamingLimits limits(files.root());
    const CapturedLog log;
    const std::string scenario =
        sdk::scenario(sdk::gige("A") + "," + sdk::usb("B", 1) + "," + sdk::usb("C", 2));
    {
        const sdk::Running simulated(scenario);
        limits.check(sdk::system());
        EXPECT_EQ(log.text(), "");
    }
    // As real cameras name their transport layers.
    const sdk::Running real(QString::fromStdString(scenario)
                                .replace(QStringLiteral("\"G\""), QStringLiteral("\"GenICamGEV\""))
                                .replace(QStringLiteral("\"U\""), QStringLiteral("\"GenICamU3V\""))
                                .toStdString());
    limits.check(sdk::system());
    EXPECT_EQ(limits.check(sdk::system()).size(), 3U) << "all that hold, logged before or not";
    const StreamingMemory memory{16, 212'992};
    EXPECT_THAT(
        log.lines(),
        ElementsAre(
            "Warning:" +
                session::usbAccessWarning(session::closedUsbCameras(files.root()))->english(),
            "Warning:" + session::usbMemoryWarning({1, 2}, memory)->english(),
            "Warning:" + session::receiveBufferWarning({1, 2}, memory)->english()));
}

} // namespace
