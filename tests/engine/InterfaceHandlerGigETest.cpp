// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerGigE.h"

#include "engine/host/Host.h"
#include "engine/host/SimulatedHostNetwork.h"
#include "tests/support/CapturedLog.h"

#include <gmock/gmock.h>

namespace {

constexpr std::uint64_t gigabit = 1'000'000'000;

class Network : public host::SimulatedHostNetwork {
public:
    using SimulatedHostNetwork::SimulatedHostNetwork;
    bool addressTable(std::vector<host::AddressRow>& rows) const override {
        return givesTable && SimulatedHostNetwork::addressTable(rows);
    }
    bool givesTable = true;
};

TEST(InterfaceHandlerGigE, answersTheSpeedOfTheFirstAdapterWithAnAddress) {
    const auto network = std::make_shared<Network>(
        std::vector<SimulatedAdapter>{{7, 0xC0A8010A, 0xFFFFFF00, gigabit, "first"},
                                      {8, 0xC0A8010A, 0xFFFFFF00, 10 * gigabit, "second"},
                                      {9, 0x0A000001, 0xFFFF0000, 5 * gigabit, "other"}});
    const InterfaceHandlerGigE handler({network});
    network->givesTable = false;
    EXPECT_EQ(handler.GetLinkSpeed(0xC0A8010A), gigabit) << "as when it was made";
    EXPECT_EQ(handler.GetLinkSpeed(0x0A000001), 5 * gigabit);
    EXPECT_EQ(handler.GetLinkSpeed(0x0A000002), 0U);
    EXPECT_EQ(handler.GetLinkSpeed(0x1'0A000001), 0U) << "all 64 bits count";

    const CapturedLog errors(std::cerr);
    EXPECT_EQ(InterfaceHandlerGigE({network}).GetLinkSpeed(0xC0A8010A), 0U);
    EXPECT_EQ(errors.text(), "Unable to get ip address table\n");
}

TEST(InterfaceHandlerGigE, tellsAddressesOfOneAdapterFromThoseOfOthers) {
    const std::vector<SimulatedAdapter> one{{1, 1, 0, gigabit, "a"}};
    const std::vector<SimulatedAdapter> two{
        {1, 2, 0, gigabit, "b"}, {2, 3, 0, gigabit, "c"}, {2, 4, 0, gigabit, "c"}};
    const InterfaceHandlerGigE handler(
        {std::make_shared<Network>(one), std::make_shared<Network>(two)});
    EXPECT_EQ(handler.adapterKey(3), handler.adapterKey(4));
    EXPECT_NE(handler.adapterKey(2), handler.adapterKey(3));
    EXPECT_NE(handler.adapterKey(2), handler.adapterKey(1)) << "another host";
    EXPECT_EQ(handler.adapterKey(5), "");
}

TEST(NetworkAdapter, takesItsFieldsFromRowAndEntry) {
    // Addresses in network byte order, as a little-endian machine has them.
    const host::AddressRow row{3, 0x0A01A8C0, 0x00FFFFFF, 0xFF01A8C0, 65535, 0x8001};
    host::InterfaceEntry entry;
    entry.transmitLinkSpeed = gigabit;
    entry.alias = u"Camera \u0142an"; // the low byte of U+0142 is B
    entry.description = u"Gigabit";
    EXPECT_THAT(makeNetworkAdapter(row, entry),
                testing::FieldsAre(3U, 0xC0A8010A, 0xFFFFFF00, 0xC0A801FF, 65535U, 0x8001U, gigabit,
                                   entry.physicalAddress.data(), "Camera Ban", "G"));
}

TEST(SimulatedHost, hasItsAdaptersBeforeThoseOfTheMachine) {
    SimulatedHost simulated;
    simulated.adapters = {{2, 0xC0A80201, 0xFFFF0000, 10 * gigabit, "fast net"}};
    const host::HostNetworks networks = host::makeNetworks(simulated);
    std::vector<host::AddressRow> rows;
    ASSERT_TRUE(networks[0]->addressTable(rows));
    const auto adapter = makeNetworkAdapter(rows.at(0), networks[0]->interfaceEntry(2));
    EXPECT_EQ(adapter.linkSpeed, 10 * gigabit);
    EXPECT_EQ(adapter.broadcast, 0xC0A8FFFFU);
    EXPECT_EQ(adapter.alias, "fast net");
}

} // namespace
