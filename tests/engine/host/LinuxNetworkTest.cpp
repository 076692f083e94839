// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/LinuxNetwork.h"
#include "engine/host/ByteOrder.h"
#include "engine/host/HostNetwork.h"
#include "engine/host/Sysfs.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <net/if.h>
#include <stdexcept>
#include <stdlib.h>

namespace {

/// A folder of its own, gone at the end of the test.
class Sysfs : public testing::Test {
protected:
    Sysfs() {
        std::string name = (std::filesystem::temp_directory_path() / "sysfs-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        m_root = name;
        std::filesystem::create_directories(folder());
    }
    ~Sysfs() override { std::filesystem::remove_all(m_root); }

    std::filesystem::path folder() const { return m_root / "class" / "net" / "eth7"; }
    void write(const std::string& file, const std::string& text) const {
        std::ofstream(folder() / file) << text;
    }

    std::filesystem::path m_root;
};

TEST_F(Sysfs, readsALinkSpeedOrNone) {
    const std::pair<std::string, std::uint64_t> cases[] = {
        {"1000\n", 1'000'000'000},     {"10000", 10'000'000'000},
        {"400000\n", 400'000'000'000}, {"-1\n", 0},
        {"4294967295\n", 0},           {"1000 Mb\n", 0},
        {"99999999999\n", 0},          {"", 0},
    };
    for (const auto& [text, expected] : cases) {
        write("speed", text);
        EXPECT_EQ(host::sysfsInterfaceEntry("eth7", m_root).transmitLinkSpeed, expected) << text;
    }
}

TEST_F(Sysfs, readsNameMtuAndPhysicalAddress) {
    write("address", "02:fc:00:00:00:a1\n");
    EXPECT_EQ(host::sysfsInterfaceEntry("eth7", m_root).mtu, 0U) << "not told";
    write("mtu", "9000\n");
    const host::InterfaceEntry entry = host::sysfsInterfaceEntry("eth7", m_root);
    EXPECT_EQ(entry.mtu, 9000U);
    EXPECT_EQ(entry.alias, u"eth7");
    const std::array<std::uint8_t, 32> expected{0x02, 0xFC, 0, 0, 0, 0xA1};
    EXPECT_EQ(entry.physicalAddress, expected);
}

TEST(LinuxNetwork, listsTheLoopbackAddress) {
    const auto network = host::makeSystemNetwork();
    std::vector<host::AddressRow> rows(1);
    ASSERT_TRUE(network->addressTable(rows));
    const auto loopback = std::find_if(rows.begin(), rows.end(), [](const auto& row) {
        return host::networkToHost(row.address) == 0x7F000001;
    });
    ASSERT_NE(loopback, rows.end());
    EXPECT_EQ(host::networkToHost(loopback->mask), 0xFF000000U);
    EXPECT_EQ(loopback->broadcast, 0U);
    const host::InterfaceEntry entry = network->interfaceEntry(loopback->interfaceIndex);
    EXPECT_EQ(entry.alias, u"lo");
    EXPECT_GE(entry.mtu, 1500U);
    EXPECT_EQ(entry.transmitLinkSpeed, 0U) << "its speed cannot be read";
    EXPECT_EQ(network->interfaceEntry(0).alias, u"") << "there is no interface 0";
}

TEST(LinuxNetwork, knowsTheAdapterOfAFurtherAddressByItsLabel) {
    const std::vector<std::string> adapters{"lo", "eth1", "eth10", "eth"};
    for (const char* label : {"eth10", "eth10:1", "eth10cameras"})
        EXPECT_EQ(host::adapterOf(label, adapters), "eth10");
    EXPECT_EQ(host::adapterOf("eth1:0", adapters), "eth1");
    EXPECT_EQ(host::adapterOf("wlan0", adapters), "");
}

TEST(LinuxNetwork, asksTheDriverForTheSpeedOfAnAdapterThatSysfsDoesNotShow) {
    const std::uint32_t cable = if_nametoindex("cable0");
    if (cable != 0) {
        ASSERT_FALSE(std::filesystem::exists("/sys/class/net/cable0"));
        EXPECT_EQ(host::makeSystemNetwork()->interfaceEntry(cable).transmitLinkSpeed, 10000000000U);
        return;
    }
    // This test once more, in a network of its own with a virtual cable.
    const std::string cableAdded = "ip link add cable0 type veth peer name cable1";
    if (system(("unshare -Urn " + cableAdded).c_str()) != 0)
        GTEST_SKIP() << "this user may not make networks";
    const std::string test = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string command = "unshare -Urn sh -c '" + cableAdded + " && exec " + test +
                                " --gtest_filter=LinuxNetwork.asks*'";
    EXPECT_EQ(system(command.c_str()), 0);
}

} // namespace
