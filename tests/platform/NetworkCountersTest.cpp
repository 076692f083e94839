// SPDX-License-Identifier: BSD-3-Clause
#include "platform/NetworkCounters.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>

namespace {

using namespace platform;
using Value = NetworkCounters::Value;
using Count = NetworkCount;

/// A host whose adapter eth0 has the index \p index and has missed \p missed packets.
void writeHost(const FileTree& host, const char* index, const char* missed, const char* received) {
    const std::string adapter = "sys/class/net/eth0/";
    host.write(adapter + "ifindex", index);
    host.write(adapter + "carrier_changes", "2\n");
    host.write(adapter + "statistics/rx_packets", "900\n");
    host.write(adapter + "statistics/rx_bytes", "81000\n");
    host.write(adapter + "statistics/rx_missed_errors", missed);
    host.write("proc/net/softnet_stat", "000000ff 0000000a 00000001 00000000\n"
                                        "00000001 00000010 00000000 00000000\n");
    host.write("proc/net/snmp", std::string("Ip: Forwarding InReceives InDelivers\nIp: 1 ") +
                                    received +
                                    " 120\nTcp: MaxConn InSegs\nTcp: -1 7\n"
                                    "Udp: InDatagrams RcvbufErrors\nUdp: 5 6\n");
    host.write("proc/net/netstat", "TcpExt: SyncookiesSent IPReversePathFilter\nTcpExt: 0 3\n"
                                   "IpExt: InNoRoutes\nMpTcpExt: 0\n");
}

TEST(NetworkCounters, areReadFromTheFilesOfLinux) {
    const FileTree host;
    writeHost(host, "4\n", "12\n", "130");
    const NetworkCounters counters = readNetworkCounters("eth0", host.root());
    const std::pair<Count, Value> expected[] = {{Count::AdapterReceived, 900},
                                                {Count::AdapterMissed, 12},
                                                {Count::AdapterReceivedBytes, 81000},
                                                {Count::AdapterDropped, {}},
                                                {Count::AdapterCarrierChanges, 2},
                                                {Count::BacklogDropped, 26},
                                                {Count::IpReceived, 130},
                                                {Count::IpDelivered, 120},
                                                {Count::TcpSegments, 7},
                                                {Count::UdpBufferErrors, 6},
                                                {Count::UdpChecksumErrors, {}},
                                                {Count::ReversePathDropped, 3},
                                                {Count::IpJoinFailures, {}}};
    for (const auto& [count, value] : expected)
        EXPECT_EQ(counters[count], value) << nameOf(count);
    for (const char* none : {"eth1", "", "../../class/net/eth0"})
        EXPECT_EQ(readNetworkCounters(none, host.root())[Count::AdapterReceived], Value()) << none;
    host.write("proc/net/softnet_stat", "nothing\n");
    EXPECT_EQ(readNetworkCounters("eth0", host.root())[Count::BacklogDropped], Value());
}

TEST(NetworkCounters, haveTheLossesOfTheAdaptersBelowAVirtualOne) {
    const FileTree host;
    writeHost(host, "4\n", "12\n", "130");
    for (const char* adapter : {"sys/class/net/eth0.5/", "sys/class/net/bond0/"}) {
        host.write(std::string(adapter) + "statistics/rx_missed_errors", "1\n");
        host.write(std::string(adapter) + "statistics/rx_packets", "50\n");
        host.write(std::string(adapter) + "statistics/rx_bytes", "700\n");
        host.link(std::string(adapter) + "lower_eth0", "sys/class/net/eth0");
    }
    const NetworkCounters vlan = readNetworkCounters("eth0.5", host.root());
    EXPECT_EQ(vlan[Count::AdapterMissed], Value(13));
    EXPECT_EQ(vlan[Count::AdapterReceived], Value(50));
    EXPECT_EQ(vlan[Count::AdapterReceivedBytes], Value(700));
    host.write("sys/class/net/bond0/bonding/mode", "\n");
    EXPECT_EQ(readNetworkCounters("bond0", host.root())[Count::AdapterMissed], Value(1));
}

TEST(NetworkCounters, differUnlessTheyWentBackOrTheAdapterIsNew) {
    const FileTree host;
    const auto read = [&](const char* index, const char* missed, const char* received) {
        writeHost(host, index, missed, received);
        return readNetworkCounters("eth0", host.root());
    };
    const NetworkCounters before = read("4", "12", "130");
    const NetworkCounters moved = difference(before, read("4", "15", "129"));
    EXPECT_EQ(moved[Count::AdapterMissed], Value(3));
    EXPECT_EQ(moved[Count::IpReceived], Value()) << "went back";
    EXPECT_EQ(moved[Count::BacklogDropped], Value(0));
    const NetworkCounters ofNew = difference(before, read("9", "15", "140"));
    EXPECT_EQ(ofNew[Count::AdapterMissed], Value()) << "counts from 0 since it was made anew";
    EXPECT_EQ(ofNew[Count::IpReceived], Value(10));
    const NetworkCounters both = sum(sum(moved, ofNew), moved);
    EXPECT_EQ(both[Count::AdapterMissed], Value(6));
    EXPECT_EQ(both[Count::IpReceived], Value(10));
}

} // namespace
