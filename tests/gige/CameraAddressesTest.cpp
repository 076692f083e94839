// SPDX-License-Identifier: BSD-3-Clause
// Cameras of other subnets get addresses. Run by tools/congested-network, which makes the network:
// this host has 10.77.0.1 on host0, and each of camera1 to camera5 an adapter eth1 to eth5.
#include "gige/AddressProbe.h"
#include "gige/BootstrapRegisters.h"
#include "gige/DiscoveryBroadcast.h"
#include "gige/ForceIp.h"
#include "gige/Gvcp.h"
#include "platform/HostCommands.h"
#include "platform/Ipv4Address.h"
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FakeCameraProcess.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <memory>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
using fakecamera::FakeCameraProcess;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Takes CAP_NET_RAW from the calling thread.
class WithoutPacketSockets {
public:
    WithoutPacketSockets() { set(false); }
    ~WithoutPacketSockets() { set(true); }
    WithoutPacketSockets(const WithoutPacketSockets&) = delete;
    WithoutPacketSockets& operator=(const WithoutPacketSockets&) = delete;

private:
    static void set(bool isPermitted) {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct sets[2] = {};
        EXPECT_EQ(syscall(SYS_capget, &header, sets), 0);
        const std::uint32_t bit = 1U << CAP_NET_RAW;
        sets[0].effective = isPermitted ? sets[0].effective | bit : sets[0].effective & ~bit;
        EXPECT_EQ(syscall(SYS_capset, &header, sets), 0);
        EXPECT_EQ(platform::mayOpenPacketSockets(), isPermitted);
    }
};

void setWayBackCheck(int value) {
    std::ofstream("/proc/sys/net/ipv4/conf/host0/rp_filter") << value << std::flush;
    EXPECT_EQ(platform::checksWayBack("host0"), value != 0);
}

/// A camera on an adapter of its own, with a MAC address that ends with its number.
class CameraOnAdapter {
public:
    CameraOnAdapter(int number, const std::string& address, const std::string& memory)
        : m_camera(address,
                   {"--adapter", "eth" + std::to_string(number), "--memory", memory, "--mac",
                    std::to_string(number), "--serial", "C" + std::to_string(number)},
                   "camera" + std::to_string(number)) {}
    void restart() { m_camera.restart(); }

private:
    FakeCameraProcess m_camera;
};

/// The addresses of the cameras that a search finds on host0.
std::vector<std::string> found() {
    std::vector<std::string> addresses;
    for (const auto& camera : gige::discoverCameras(300ms))
        if (camera.adapter == "host0")
            addresses.push_back(platform::addressText(camera.address));
    return addresses;
}

/// What the program says when it refuses.
std::string refused(const std::string& arguments) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run("set-ip " + arguments), 1) << arguments;
    return spanlet.err();
}

class CameraAddresses : public testing::Test {
protected:
    ~CameraAddresses() override { setWayBackCheck(0); }

    std::string memory(int number) const {
        return (m_files.root() / std::to_string(number)).string();
    }

private:
    const FileTree m_files;
};

TEST_F(CameraAddresses, areFoundInOtherSubnetsAsFarAsTheKernelPermits) {
    // Two cameras have the same address.
    const CameraOnAdapter one(1, "192.168.5.2", memory(1));
    const CameraOnAdapter two(2, "192.168.5.2", memory(2));
    const auto both = ElementsAre("192.168.5.2", "192.168.5.2");
    for (const int check : {0, 1, 2}) {
        SCOPED_TRACE(check);
        setWayBackCheck(check);
        EXPECT_THAT(found(), both) << "by packet sockets";
        const WithoutPacketSockets without;
        if (check == 0)
            EXPECT_THAT(found(), both) << "by broadcast";
        else
            EXPECT_THAT(found(), IsEmpty()) << "the kernel discards them";
    }
}

TEST_F(CameraAddresses, lastUntilARestartUnlessTheyArePersistent) {
    CameraOnAdapter camera(1, "192.168.5.2", memory(1));
    setWayBackCheck(1);
    EXPECT_THAT(textOf("set-ip C1 10.77.0.40 --dry-run"), HasSubstr("not done"));
    EXPECT_THAT(found(), ElementsAre("192.168.5.2"));
    EXPECT_EQ(textOf("set-ip C1 10.77.0.40"),
              "DEV_02FC00000001 on host0: 192.168.5.2/24 -> 10.77.0.40/24, until the camera is "
              "restarted\n");
    const QJsonObject figures = jsonOf("benchmark --cameras genicam --all --seconds 1");
    EXPECT_GT(number(figures, "interfaces 0 cameras 0 receivedFrames"), 5);

    camera.restart();
    EXPECT_THAT(found(), ElementsAre("192.168.5.2"));
    EXPECT_THAT(textOf("set-ip C1 10.77.0.41/25 --persistent --gateway 10.77.0.1"),
                HasSubstr("-> 10.77.0.41/25, also after a restart"));
    camera.restart();
    const auto cameras = gige::discoverCameras(300ms);
    ASSERT_EQ(cameras.size(), 1U);
    EXPECT_EQ(platform::addressText(cameras[0].address), "10.77.0.41");
    EXPECT_EQ(platform::addressText(cameras[0].mask), "255.255.255.128");
    EXPECT_EQ(platform::addressText(cameras[0].gateway), "10.77.0.1");
    EXPECT_TRUE(cameras[0].current.persistent);
}

TEST_F(CameraAddresses, areNotThoseOfOtherHosts) {
    const CameraOnAdapter one(1, "192.168.5.2", memory(1));
    const CameraOnAdapter two(2, "192.168.5.2", memory(2));
    // camera3 is a host without a camera.
    EXPECT_THAT(refused("C1 10.77.0.13"), HasSubstr("Another host has 10.77.0.13: its MAC"));
    EXPECT_THAT(refused("C1 10.77.0.1"), HasSubstr("this host's own address"));
    textOf("set-ip C1 auto");
    EXPECT_THAT(found(), ElementsAre("10.77.0.2", "192.168.5.2"));
    EXPECT_THAT(refused("C2 10.77.0.2"), HasSubstr("The camera DEV_02FC00000001 has 10.77.0.2"));
    textOf("set-ip C2 auto");
    EXPECT_THAT(found(), ElementsAre("10.77.0.2", "10.77.0.3"));

    const auto adapters = platform::networkAdapters().value();
    const auto host = std::find_if(adapters.begin(), adapters.end(),
                                   [](const auto& each) { return each.name == "host0"; });
    ASSERT_NE(host, adapters.end());
    const auto hasHost = [&](std::uint32_t address) {
        return gige::hostWithAddress(*host, address).has_value();
    };
    EXPECT_TRUE(hasHost(0x0A4D000E));
    EXPECT_FALSE(hasHost(0x0A4D0063));
    const WithoutPacketSockets without;
    EXPECT_TRUE(hasHost(0x0A4D000F)) << "not asked before";
    EXPECT_FALSE(hasHost(0x0A4D0064));
}

TEST_F(CameraAddresses, stayWhileAProgramControlsTheCameraUnseen) {
    const CameraOnAdapter camera(1, "10.77.0.50", memory(1));
    gige::GvcpConnection other(0x0A4D0032, {1000ms, 3});
    const auto taken = other.writeRegister(gige::privilegeRegister, 2);
    ASSERT_TRUE(taken && taken->status == 0);
    EXPECT_THAT(refused("C1 10.77.0.51"), HasSubstr("is in use by a program on 10.77.0.1."));
    // The camera itself refuses.
    const auto adapter = platform::adapterTowards(0x0A4D0032);
    ASSERT_TRUE(adapter);
    EXPECT_EQ(gige::forceIp(*adapter, 0x02FC00000001, {0x0A4D0033, 0xFFFFFF00, 0}),
              std::optional(gige::accessDenied));
    EXPECT_THAT(found(), ElementsAre("10.77.0.50"));
}

} // namespace
