// SPDX-License-Identifier: BSD-3-Clause
#include "session/StreamingLimits.h"
#include "session/UsbAccess.h"

#include "tests/orvcpp/SdkFixture.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeCameraProcess.h"

#include <QString>
#include <QTemporaryDir>

namespace {

using session::StreamingMemory;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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
        *session::usbMemoryWarning({0, 3}, {16, wholeBuffer}),
        AllOf(HasSubstr("48 MB"), HasSubstr("allows 16 MB"),
              HasSubstr("echo 48 | sudo tee /sys/module/usbcore/parameters/usbfs_memory_mb")));
}

TEST(StreamingLimits, warnsOfAReceiveBufferBelowWhatAStreamAsksFor) {
    EXPECT_THAT(*session::receiveBufferWarning({1, 0}, {16, wholeBuffer - 1}),
                HasSubstr("sudo sysctl -w net.core.rmem_max=33554432"));
    EXPECT_FALSE(session::receiveBufferWarning({9, 0}, {16, wholeBuffer}));
    EXPECT_FALSE(session::receiveBufferWarning({0, 9}, {0, 212'992}));
    EXPECT_FALSE(session::receiveBufferWarning({1, 0}, {16, std::nullopt}));
}

/// Three cameras; their transport layers have the given names.
std::string scenario(const QString& gige, const QString& usb) {
    return QString::fromStdString(
               sdk::scenario(sdk::gige("A") + "," + sdk::usb("B", 1) + "," + sdk::usb("C", 2)))
        .replace(QStringLiteral("\"G\""), gige)
        .replace(QStringLiteral("\"U\""), usb)
        .toStdString();
}

void write(const std::filesystem::path& folder, const char* name, const char* text) {
    std::filesystem::create_directories(folder);
    std::ofstream(folder / name) << text;
}

/// A USB device with two interfaces, the second one of a class such as "ef0500", and without a
/// device file.
void addUsbDevice(const std::filesystem::path& root, const std::string& port, const char* number,
                  const std::string& interfaceClass) {
    const auto devices = root / "sys/bus/usb/devices";
    write(devices / port, "busnum", "2\n");
    write(devices / port, "devnum", number);
    write(devices / port, "product", "Camera\n");
    write(devices / port, "serial", number);
    write(devices / port / (port + ":1.0"), "bInterfaceClass", "ff\n");
    const auto interface = devices / port / (port + ":1.1");
    write(interface, "bInterfaceClass", (interfaceClass.substr(0, 2) + '\n').c_str());
    write(interface, "bInterfaceSubClass", (interfaceClass.substr(2, 2) + '\n').c_str());
    write(interface, "bInterfaceProtocol", (interfaceClass.substr(4) + '\n').c_str());
}

TEST(UsbAccess, namesTheCamerasThatCannotBeOpened) {
    const QTemporaryDir folder;
    const std::filesystem::path root = folder.path().toStdString();
    EXPECT_FALSE(session::usbAccessWarning(session::closedUsbCameras(root))) << "no USB at all";
    addUsbDevice(root, "2-1", "7", "ef0500");
    addUsbDevice(root, "2-2.4", "12", "ef0500");
    addUsbDevice(root, "2-3", "13", "0e0100");
    write(root / "dev/bus/usb/002", "012", "descriptors");

    const auto closed = session::closedUsbCameras(root);
    ASSERT_EQ(closed.size(), 1U) << "the second may be opened, the third is a webcam";
    EXPECT_EQ(closed[0].name, "Camera 7");
    EXPECT_EQ(closed[0].file, "/dev/bus/usb/002/007");
    EXPECT_THAT(*session::usbAccessWarning(closed),
                AllOf(HasSubstr("Camera 7 (/dev/bus/usb/002/007)"),
                      HasSubstr("ENV{ID_USB_INTERFACES}==\"*:ef0500:*\"")));
    EXPECT_EQ(std::ifstream(root / "dev/bus/usb/002/012").peek(), 'd') << "left as it was";
}

TEST(StreamingLimits, warnsOnceForRealCameras) {
    const QTemporaryDir folder;
    const std::filesystem::path root = folder.path().toStdString();
    write(root / "sys/module/usbcore/parameters", "usbfs_memory_mb", "16\n");
    write(root / "proc/sys/net/core", "rmem_max", "212992\n");
    addUsbDevice(root, "2-1", "7", "ef0500");
    const StreamingMemory memory{16, 212'992};
    const RealCameras cameras{1, 2};

    session::StreamingLimits limits(root);
    const CapturedLog log;
    {
        const sdk::Running simulated(scenario(QStringLiteral("\"G\""), QStringLiteral("\"U\"")));
        limits.check(sdk::system());
        EXPECT_THAT(log.lines(), IsEmpty());
    }
    const sdk::Running real(
        scenario(QStringLiteral("\"GenICamGEV\""), QStringLiteral("\"GenICamU3V\"")));
    limits.check(sdk::system());
    EXPECT_EQ(limits.check(sdk::system()).size(), 3U) << "all that hold, logged before or not";
    EXPECT_THAT(
        log.lines(),
        ElementsAre("Warning:" + *session::usbAccessWarning(session::closedUsbCameras(root)),
                    "Warning:" + *session::usbMemoryWarning(cameras, memory),
                    "Warning:" + *session::receiveBufferWarning(cameras, memory)));
}

TEST(StreamingLimits, countsCamerasOfTheNetwork) {
    const fakecamera::FakeCameraProcess camera("127.0.0.2");
    ASSERT_EQ(sdk::system().Startup(L":genicam"), OrvErrorSuccess) << sdk::startupError();
    const RealCameras found = realCameras(sdk::system());
    EXPECT_EQ(found.gige, 1U);
    EXPECT_EQ(found.usb, 0U);
    sdk::system().Shutdown();
}

} // namespace
