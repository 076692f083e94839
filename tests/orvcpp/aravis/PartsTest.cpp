// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/DetachableThreads.h"
#include "orvcpp/aravis/device/DeviceThread.h"
#include "orvcpp/aravis/discovery/DatagramSocket.h"
#include "orvcpp/aravis/discovery/Gvcp.h"
#include "orvcpp/aravis/discovery/NetworkAdapters.h"
#include "orvcpp/aravis/discovery/UsbBus.h"
#include "orvcpp/aravis/stream/FrameIds.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using namespace orv::aravis;
namespace fs = std::filesystem;

struct NumberCase {
    const char* what;
    std::uint64_t first;
    std::optional<std::uint64_t> previous;
    /// What the camera says; negative for an incomplete frame.
    std::vector<std::int64_t> raw;
    /// 0xBAD where the number is not to be trusted.
    std::vector<std::uint64_t> expected;
};

constexpr std::uint64_t untrusted = 0xBAD;

void PrintTo(const NumberCase& row, std::ostream* out) {
    *out << row.what;
}

class FrameNumbers : public testing::TestWithParam<NumberCase> {};

TEST_P(FrameNumbers, AreExtended) {
    FrameIds ids(GetParam().first, GetParam().previous);
    std::vector<std::uint64_t> extended;
    for (const std::int64_t raw : GetParam().raw)
        extended.push_back(
            ids.extend(static_cast<std::uint64_t>(std::abs(raw)), raw >= 0).value_or(untrusted));
    EXPECT_EQ(extended, GetParam().expected);
}

const std::int64_t beyond16Bits = 0x1FFFF;

INSTANTIATE_TEST_SUITE_P(
    Cases, FrameNumbers,
    testing::Values(
        NumberCase{"plain", 1, {}, {1, 2, 4}, {1, 2, 4}},
        NumberCase{"the first ones lost", 1, {}, {3, 4}, {3, 4}},
        NumberCase{"counts on from before", 1, 65000, {65001, 65003}, {1, 3}},
        NumberCase{"counts on from a small number", 1, 9, {10, 11}, {1, 2}},
        NumberCase{"counts anew", 1, 9, {1, 2}, {1, 2}},
        NumberCase{"over the end of 16 bits, without 0", 1, {}, {65534, 65535, 1, 2}, {1, 2, 3, 4}},
        NumberCase{"lost over the end", 1, {}, {65534, 3}, {1, 5}},
        NumberCase{"in the wrong order", 1, {}, {1, 3, 2, 4}, {1, 3, 2, 4}},
        NumberCase{"in the wrong order over the end", 1, 65000, {65534, 1, 65535, 2}, {1, 3, 2, 4}},
        NumberCase{"64 bits", 1, {}, {65535, 65536, 65537}, {1, 2, 3}},
        NumberCase{"64 bits and a long gap", 1, {}, {1, beyond16Bits}, {1, 0x1FFFF}},
        NumberCase{"USB", 0, {}, {0, 1, 3}, {0, 1, 3}},
        NumberCase{"USB counts on", 0, 700, {701, 702}, {0, 1}},
        NumberCase{"incomplete", 1, {}, {1, -2, 3}, {1, 2, 3}},
        NumberCase{"incomplete with a stale number", 1, {}, {7, 8, -6, 10}, {7, 8, untrusted, 10}},
        NumberCase{"stale at first", 1, {}, {-500, 2}, {untrusted, 2}}));

TEST(Calls, WaitForADeviceThatHangsOnlyOnceAndGoOnWhenItHasAnswered) {
    using namespace std::chrono_literals;
    orv::aravis::DetachableThreads threads;
    const auto device = DeviceThread::begin(threads, 0ms);
    EXPECT_EQ(device->call([]() -> OrvErrorType { throw std::bad_alloc(); }, 10s),
              OrvErrorResources);

    const auto answer = std::make_shared<std::promise<void>>();
    const auto hang = [answer]() -> OrvErrorType {
        answer->get_future().wait();
        return OrvErrorSuccess;
    };
    EXPECT_EQ(device->call(hang, 10ms), OrvErrorTimeout);
    const auto succeed = []() -> OrvErrorType {
        return OrvErrorSuccess;
    };
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(device->call(succeed, 10s), OrvErrorTimeout);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 5s);
    answer->set_value();
    while (device->call(succeed, 10s) == OrvErrorTimeout)
        std::this_thread::yield();
    EXPECT_EQ(device->call(succeed, 10s), OrvErrorSuccess);
    device->quit();
    threads.join(10s);
}

/// A USB tree as the kernel shows it, in a temporary folder.
class UsbTree : public testing::Test {
protected:
    UsbTree() { fs::create_directories(m_root / "bus/usb/devices"); }
    ~UsbTree() override { fs::remove_all(m_root); }

    void add(const std::string& path, const std::string& devpath, const std::string& serial) {
        const fs::path folder = m_root / "devices" / path;
        fs::create_directories(folder);
        const auto write = [&](const char* name, const std::string& text) {
            std::ofstream(folder / name) << text << '\n';
        };
        write("busnum", "2");
        write("devnum", "7");
        write("devpath", devpath);
        write("serial", serial);
        write("manufacturer", "Maker");
        write("product", "Camera");
        write("speed", "5000");
        fs::create_directory_symlink(folder, m_root / "bus/usb/devices" / folder.filename());
    }

    const fs::path m_root =
        fs::path(testing::TempDir()) / ("usb-tree-" + std::to_string(::getpid()));
};

TEST_F(UsbTree, DeviceTellsWhereItHangsAndWhoHasIt) {
    add("pci0000:00/0000:00:1c.4/0000:0a:00.1/usb2/2-1/2-1.4", "1.4", "S1");
    add("pci0001:00/0001:00:00.0/0001:01:00.0/usb5/5-1", "1", "S0");
    add("platform/soc/usb3/3-2", "2", "S2");
    const auto devices = usbDevices(m_root);
    ASSERT_EQ(devices.size(), 3U);
    EXPECT_EQ(devices[0].serialNumber, "S1");
    EXPECT_EQ(devices[0].controller, "10-0-1") << "the bridge above it is not the controller";
    EXPECT_EQ(devices[0].location(), "::2/1/4");
    EXPECT_EQ(devices[0].linkSpeed, 5'000'000'000);
    EXPECT_EQ(devices[1].controller, "257-0-0") << "of another PCI domain";
    EXPECT_EQ(devices[2].controller, "bus2");

    EXPECT_FALSE(devices[0].isClaimed());
    const fs::path interface = devices[0].folder / "2-1.4:1.0";
    fs::create_directories(interface);
    fs::create_directories(m_root / "bus/usb/drivers/usbfs");
    fs::create_directory_symlink(m_root / "bus/usb/drivers/usbfs", interface / "driver");
    EXPECT_TRUE(devices[0].isClaimed());

    EXPECT_TRUE(devices[0].isPresent());
    fs::remove_all(devices[0].folder);
    EXPECT_FALSE(devices[0].isPresent());
    std::ofstream(devices[1].folder / "devnum") << "8\n";
    EXPECT_FALSE(devices[1].isPresent()) << "it was pulled and plugged in again";
}

TEST_F(UsbTree, HostWithoutUsbHasNoDevices) {
    EXPECT_TRUE(usbDevices(m_root / "nothing").empty());
}

TEST(Network, AdapterIsTheOneOfTheRoute) {
    const auto adapter = adapterTowards(0x7F000509);
    ASSERT_TRUE(adapter);
    EXPECT_EQ(adapter->name, "lo");
    EXPECT_EQ(adapter->address, 0x7F000001U);
    EXPECT_TRUE(adapter->isLoopback);
    EXPECT_FALSE(parseAddress("127.0.0"));
    EXPECT_EQ(macNumber("02:fc:00:00:00:01"), 0x02FC00000001U);
    EXPECT_EQ(macNumber("A-GUID"), 0U);
}

TEST(Network, SpeedOfALinkIsUnknownWhereTheKernelTellsNone) {
    EXPECT_EQ(linkSpeed("lo"), 0);
    const fs::path root = fs::path(testing::TempDir()) / ("net-tree-" + std::to_string(::getpid()));
    fs::create_directories(root / "class/net/eth0");
    for (const auto& [text, expected] :
         {std::pair("10000", 10'000'000'000), std::pair("-1", 0L), std::pair("4294967295", 0L)}) {
        std::ofstream(root / "class/net/eth0/speed") << text << '\n';
        EXPECT_EQ(linkSpeed("eth0", root), expected) << text;
    }
    fs::remove_all(root);
}

/// A camera that says to its first question that it needs \p milliseconds more, and answers 7 some
/// time later if it \p answers at all. How many more questions it got meanwhile.
int answerSlowly(std::uint32_t address, std::uint16_t milliseconds, bool answers,
                 std::promise<void>& isReady) {
    const DatagramSocket socket;
    sockaddr_in own{};
    own.sin_family = AF_INET;
    own.sin_addr.s_addr = htonl(address);
    own.sin_port = htons(3956);
    EXPECT_EQ(bind(socket.handle(), reinterpret_cast<const sockaddr*>(&own), sizeof own), 0);
    isReady.set_value();

    std::uint8_t question[64];
    sockaddr_in peer{};
    socklen_t size = sizeof peer;
    EXPECT_EQ(recvfrom(socket.handle(), question, sizeof question, 0,
                       reinterpret_cast<sockaddr*>(&peer), &size),
              12);
    const auto send = [&](std::vector<std::uint8_t> packet) {
        packet[7] = question[7];
        sendto(socket.handle(), packet.data(), packet.size(), 0,
               reinterpret_cast<const sockaddr*>(&peer), size);
    };
    send({0, 0, 0, 0x89, 0, 4, 0, 0, 0, 0, static_cast<std::uint8_t>(milliseconds >> 8U),
          static_cast<std::uint8_t>(milliseconds)});
    pollfd asked{socket.handle(), POLLIN, 0};
    const int questions = poll(&asked, 1, 300);
    if (answers)
        send({0, 0, 0, 0x81, 0, 4, 0, 0, 0, 0, 0, 7});
    return questions;
}

TEST(Gvcp, CameraThatNeedsLongerIsWaitedForButNotForEver) {
    using namespace std::chrono_literals;
    // No other process of this test has this address.
    const std::uint32_t address = 0x7F400000U + static_cast<std::uint32_t>(::getpid() & 0x3FFFFF);
    for (const bool answers : {true, false}) {
        std::promise<void> isReady;
        auto camera = std::async(std::launch::async, [&] {
            return answerSlowly(address, answers ? 5000 : 60'000, answers, isReady);
        });
        isReady.get_future().wait();
        const auto begun = std::chrono::steady_clock::now();
        const auto answer = Gvcp(address, 100ms, 3).readRegister(privilegeRegister);
        EXPECT_LT(std::chrono::steady_clock::now() - begun, 5s);
        EXPECT_EQ(camera.get(), 0) << "asked again";
        ASSERT_TRUE(answer) << "it lives";
        EXPECT_EQ(Gvcp::value(*answer), answers ? std::optional(7U) : std::nullopt);
    }
}

TEST(Access, IsWhatThePrivilegeRegisterLeaves) {
    constexpr unsigned all = OrvAccessModeFull | OrvAccessModeRead;
    const auto granted = [](std::uint16_t status, std::vector<std::uint8_t> data) {
        return static_cast<unsigned>(grantedBy({status, std::move(data)}));
    };
    EXPECT_EQ(granted(0, {0, 0, 0, 0}), all);
    EXPECT_EQ(granted(0, {0, 0, 0, 2}), OrvAccessModeRead);
    EXPECT_EQ(granted(0, {0, 0, 0, 6}), OrvAccessModeRead) << "control that may be taken over";
    EXPECT_EQ(granted(0, {0, 0, 0, 3}), OrvAccessModeNone);
    EXPECT_EQ(granted(0x8006, {}), OrvAccessModeNone) << "refused: somebody has it to himself";
    EXPECT_EQ(granted(0x8001, {}), all) << "not to be read: opening will show";
}

} // namespace
