// SPDX-License-Identifier: BSD-3-Clause
#include "platform/NetworkAdapters.h"
#include "platform/Ipv4Address.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>

namespace {

using namespace platform;

TEST(NetworkAdapters, readLinkSpeedMtuAndMacAddress) {
    const std::pair<std::string, std::int64_t> speeds[] = {
        {"1000\n", 1'000'000'000}, {"400000", 400'000'000'000}, {"-1\n", 0},     {"", 0},
        {"4294967295\n", 0},       {"99999999999\n", 0},        {"1000 Mb\n", 0}};
    const FileTree files;
    for (const auto& [text, expected] : speeds) {
        files.write("class/net/eth7/speed", text);
        EXPECT_EQ(linkSpeed("eth7", files.root()), expected) << text;
    }
    EXPECT_EQ(linkSpeed("lo"), 0);
    EXPECT_EQ(mtu("eth7", files.root()), 0) << "not known";
    EXPECT_EQ(macAddress("eth7", files.root()), 0U) << "not known";
    files.write("class/net/eth7/mtu", "9000\n");
    files.write("class/net/eth7/address", "02:fc:00:00:00:a1\n");
    EXPECT_EQ(mtu("eth7", files.root()), 9000);
    EXPECT_EQ(macAddress("eth7", files.root()), 0x02FC000000A1U);
    EXPECT_GE(mtu("lo"), 1500);
}

TEST(NetworkAdapters, discardAnswersOfOtherSubnetsWhereOneFilterIsOn) {
    const FileTree files;
    EXPECT_FALSE(checksWayBack("eth7", files.root())) << "not known";
    for (const auto& [all, own] : {std::pair("0", "2"), {"1", "0"}, {"0", "0"}}) {
        files.write("proc/sys/net/ipv4/conf/all/rp_filter", all);
        files.write("proc/sys/net/ipv4/conf/eth7/rp_filter", own);
        EXPECT_EQ(checksWayBack("eth7", files.root()), *all != '0' || *own != '0');
    }
}

TEST(NetworkAdapters, areThoseOfTheRouteToAnAddress) {
    const auto adapter = adapterTowards(0x7F000509);
    ASSERT_TRUE(adapter);
    EXPECT_EQ(adapter->name, "lo");
    EXPECT_EQ(adapter->address, 0x7F000001U);
    EXPECT_EQ(adapter->mask, 0xFF000000U);
    EXPECT_EQ(adapter->broadcast, 0U);
    EXPECT_TRUE(adapter->isUp);
    EXPECT_TRUE(adapter->isLoopback);
}

TEST(NetworkAdapters, areFoundByTheLabelOfAFurtherAddress) {
    const std::vector<std::string> adapters{"lo", "eth1", "eth10", "eth"};
    for (const char* label : {"eth10", "eth10:1", "eth10cameras"})
        EXPECT_EQ(adapterOf(label, adapters), "eth10");
    EXPECT_EQ(adapterOf("eth1:0", adapters), "eth1");
    EXPECT_EQ(adapterOf("wlan0", adapters), "");
}

TEST(Addresses, areReadFromTexts) {
    EXPECT_EQ(parseAddress("192.168.1.10"), 0xC0A8010AU);
    EXPECT_FALSE(parseAddress("127.0.0"));
    EXPECT_EQ(macNumber("02-FC-00-00-00-0a"), 0x02FC0000000AU);
    EXPECT_EQ(macNumber("A-GUID"), 0U);
    EXPECT_EQ(macNumber("80:00:02:08:fe:80:00"), 0U) << "seven bytes";
    EXPECT_EQ(macText(0x02FC0000000A), "02:fc:00:00:00:0a");
}

} // namespace
