// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/HostCollector.h"
#include "gige/BootstrapRegisters.h"
#include "gige/ControlSession.h"
#include "tests/support/FakeCameraProcess.h"
#include "tests/support/FileTree.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <memory>

namespace {

using namespace doctor;

const AdapterEvidence& adapterOf(const HostEvidence& host, const char* name) {
    const auto found =
        std::find_if(host.adapters.begin(), host.adapters.end(),
                     [&](const AdapterEvidence& adapter) { return adapter.name == name; });
    EXPECT_NE(found, host.adapters.end());
    return *found;
}

TEST(HostCollector, readsFilesAndAsksDrivers) {
    const FileTree files;
    files.write("sys/class/net/lo/mtu", "1400\n");
    files.write("sys/class/net/eth9/statistics/rx_crc_errors", "3\n");
    files.write("proc/sys/net/ipv4/conf/all/rp_filter", "1\n");
    files.write("proc/sys/net/ipv4/conf/lo/rp_filter", "0\n");
    files.write("proc/net/netstat", "TcpExt: IPReversePathFilter\nTcpExt: 8\n");
    files.write("proc/sys/net/core/rmem_max", "212992\n");
    files.write("sys/devices/system/cpu/cpu0/cpufreq/scaling_governor", "powersave\n");
    // A VLAN, its bond, and that one's only adapter.
    files.write("sys/class/net/lo/lower_bond9/mtu", "1500\n");
    files.write("sys/class/net/bond9/lower_eth9/mtu", "1500\n");
    files.write("sys/class/net/eth9/device/features", std::string(128, '0') + "\n");
    HostEvidence host;
    HostCollector(files.root(), [](const std::string& adapter, void* command) {
        auto* const ring = static_cast<ethtool_ringparam*>(command);
        if (adapter == "bond9" || ring->cmd != ETHTOOL_GRINGPARAM)
            return false;
        ring->rx_pending = 256;
        ring->rx_max_pending = 4096;
        return true;
    }).read(host);
    const AdapterEvidence& loopback = adapterOf(host, "lo");
    EXPECT_TRUE(loopback.isLoopback);
    ASSERT_EQ(loopback.subnets.size(), 1U);
    EXPECT_TRUE(loopback.subnets[0].contains(0x7F000002));
    EXPECT_EQ(loopback.mtu, Number(1400));
    EXPECT_EQ(loopback.reversePathFilter, Number(1));
    ASSERT_TRUE(loopback.ring);
    EXPECT_EQ(loopback.ring->packets, 256U);
    EXPECT_FALSE(loopback.coalescing);
    EXPECT_TRUE(loopback.mayCoalesce);
    const AdapterEvidence& cable = adapterOf(host, "eth9");
    EXPECT_TRUE(cable.ring);
    EXPECT_FALSE(cable.mayCoalesce);
    EXPECT_EQ(cable.counters[platform::NetworkCount::AdapterChecksumErrors], Number(3));
    EXPECT_EQ(host.reversePathDropped, Number(8));
    EXPECT_EQ(host.memory.receiveBufferBytes, Number(212'992));
    EXPECT_FALSE(host.memory.mayOpenPacketSockets);
    ASSERT_EQ(host.frequencies.size(), 1U);
    EXPECT_TRUE(host.frequencies[0].isSlowest());
}

TEST(HostCollector, findsCamerasAndWhoControlsThem) {
    const fakecamera::FakeCameraProcess free("127.0.0.2", {"--heartbeat", "60000"});
    const fakecamera::FakeCameraProcess held("127.0.0.3", {"--heartbeat", "60000"});
    gige::GvcpConnection program(0x7F000003, {std::chrono::milliseconds(500), 3});
    const auto find = [](std::size_t index) {
        const std::vector<NetworkCamera> cameras = findNetworkCameras();
        EXPECT_EQ(cameras.size(), 2U);
        return index < cameras.size() ? cameras[index] : NetworkCamera();
    };
    const NetworkCamera camera = find(0);
    EXPECT_EQ(camera.id, "DEV_02FC7F000002");
    EXPECT_EQ(camera.address, 0x7F000002U);
    EXPECT_EQ(camera.adapter + camera.routeAdapter, "lolo");
    EXPECT_TRUE(camera.isReachable);
    EXPECT_FALSE(camera.controller);
    // Control, then exclusive access, in which the camera does not name the controlling program.
    for (const std::uint32_t privilege : {2U, 1U}) {
        ASSERT_TRUE(program.writeRegister(gige::privilegeRegister, privilege));
        const NetworkCamera taken = find(1);
        ASSERT_TRUE(taken.controller);
        EXPECT_EQ(taken.controller->address, privilege == 2 ? 0x7F000001U : 0U);
        EXPECT_EQ(taken.controller->port != 0, privilege == 2);
    }
    ASSERT_TRUE(program.writeRegister(gige::privilegeRegister, 0));
    EXPECT_FALSE(find(1).controller);
}

/// Whether this computer sends packets of at most so many bytes whole.
bool limitLoopback(std::uint32_t bytes) {
    return std::system(("ip link set lo mtu " + std::to_string(bytes)).c_str()) == 0;
}

TEST(HostCollector, measuresPathsAndPutsRegistersBack) {
    const fakecamera::FakeCameraProcess camera("127.0.0.2", {"--packet-size", "4000"});
    const fakecamera::FakeCameraProcess held("127.0.0.3", {"--heartbeat", "60000"});
    const gige::Gvcp gvcp(0x7F000002, std::chrono::milliseconds(500), 3);
    const auto registers = [&] {
        return gvcp.readMemory(gige::streamPortRegister, 0x1C).value().data;
    };
    auto program = std::make_unique<gige::ControlSession>(0x7F000002);
    ASSERT_EQ(program->take(), gige::ControlResult::Taken);
    ASSERT_TRUE(program->write(gige::streamAddressRegister, 0x7F000009));
    program = std::make_unique<gige::ControlSession>(0x7F000003);
    ASSERT_EQ(program->take(), gige::ControlResult::Taken);
    const auto before = registers();

    AdapterEvidence loopback;
    loopback.name = "lo";
    // Of the way, of the adapter, and the largest packet that arrives.
    for (const auto& [path, mtu, largest] :
         std::initializer_list<std::array<std::uint32_t, 3>>{{65'536, 65'536, 9000},
                                                             {65'536, 1500, 1500},
                                                             {3000, 9000, 3000},
                                                             {700, 9000, 700},
                                                             {6000, 9000, 6000}}) {
        if (!limitLoopback(path))
            GTEST_SKIP() << "This user may not change an adapter.";
        std::vector<NetworkCamera> cameras = findNetworkCameras();
        ASSERT_EQ(cameras.size(), 2U);
        loopback.mtu = mtu;
        testPaths(cameras, {loopback});
        EXPECT_EQ(cameras[0].path.packetSize, 4000U);
        EXPECT_EQ(cameras[0].path.largestArrived, largest) << path << ' ' << mtu;
        EXPECT_NE(cameras[1].path.untested.find("Another program controls"), std::string::npos);
        EXPECT_EQ(registers(), before) << path;
    }
    limitLoopback(65'536);
}

} // namespace
