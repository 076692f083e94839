// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerGigE.h"
#include "engine/host/ByteOrder.h"
#include "platform/NetworkAdapters.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <net/if.h>
#include <stdlib.h>

namespace {

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
    EXPECT_EQ(entry.transmitLinkSpeed, 0U) << "its speed cannot be read";
    EXPECT_EQ(network->interfaceEntry(0).alias, u"") << "there is no interface 0";
}

/// The real cameras name an interface by the adapter towards the camera. A virtual cable has a
/// speed that only its driver tells: /sys shows the adapters of the network that mounted it.
TEST(LinuxNetwork, knowsTheSpeedOfTheAdapterTowardsACamera) {
    if (if_nametoindex("cable0") != 0) {
        ASSERT_FALSE(std::filesystem::exists("/sys/class/net/cable0"));
        const auto adapter = platform::adapterTowards(0x0A4D0102);
        ASSERT_TRUE(adapter);
        EXPECT_EQ(adapter->name, "cable0");
        EXPECT_EQ(InterfaceHandlerGigE().GetLinkSpeed(adapter->address), 10'000'000'000U);
        return;
    }
    // Runs this test again in a network of its own with a virtual cable.
    const std::string cableAdded = "ip link add cable0 type veth peer name cable1 && "
                                   "ip address add 10.77.1.1/24 dev cable0 && "
                                   "ip link set cable0 up && ip link set cable1 up";
    if (system(("unshare -Urn sh -c '" + cableAdded + '\'').c_str()) != 0)
        GTEST_SKIP() << "this user may not make networks";
    const std::string test = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string command = "unshare -Urn sh -c '" + cableAdded + " && exec " + test +
                                " --gtest_filter=LinuxNetwork.knows*'";
    EXPECT_EQ(system(command.c_str()), 0);
}

} // namespace
