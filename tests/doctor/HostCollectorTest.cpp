// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/HostCollector.h"
#include "gige/BootstrapRegisters.h"
#include "gige/Gvcp.h"
#include "tests/support/FakeCameraProcess.h"
#include "tests/support/FileTree.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <linux/ethtool.h>

namespace {

using namespace doctor;

const AdapterEvidence& loopbackOf(const HostEvidence& host) {
    const auto found =
        std::find_if(host.adapters.begin(), host.adapters.end(),
                     [](const AdapterEvidence& adapter) { return adapter.name == "lo"; });
    EXPECT_NE(found, host.adapters.end());
    return *found;
}

TEST(HostCollector, readsFilesAndAsksDrivers) {
    const FileTree files;
    files.write("sys/class/net/lo/mtu", "1400\n");
    files.write("sys/class/net/lo/statistics/rx_crc_errors", "3\n");
    files.write("proc/sys/net/ipv4/conf/all/rp_filter", "1\n");
    files.write("proc/sys/net/ipv4/conf/lo/rp_filter", "0\n");
    files.write("proc/net/netstat", "TcpExt: IPReversePathFilter\nTcpExt: 8\n");
    files.write("proc/sys/net/core/rmem_max", "212992\n");
    files.write("sys/devices/system/cpu/cpu0/cpufreq/scaling_governor", "powersave\n");
    HostEvidence host;
    HostCollector(files.root(), [](const std::string& adapter, void* command) {
        auto* const ring = static_cast<ethtool_ringparam*>(command);
        if (adapter != "lo" || ring->cmd != ETHTOOL_GRINGPARAM)
            return false;
        ring->rx_pending = 256;
        ring->rx_max_pending = 4096;
        return true;
    }).read(host);
    const AdapterEvidence& loopback = loopbackOf(host);
    EXPECT_TRUE(loopback.isLoopback);
    ASSERT_EQ(loopback.subnets.size(), 1U);
    EXPECT_TRUE(loopback.subnets[0].contains(0x7F000002));
    EXPECT_EQ(loopback.mtu, Number(1400));
    EXPECT_EQ(loopback.counters[platform::NetworkCount::AdapterChecksumErrors], Number(3));
    EXPECT_EQ(loopback.reversePathFilter, Number(1));
    ASSERT_TRUE(loopback.ring);
    EXPECT_EQ(loopback.ring->packets, 256U);
    EXPECT_FALSE(loopback.coalescing);
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

} // namespace
