// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerGigE.h"

#include "engine/host/HostNetwork.h"
#include "tests/support/CapturedLog.h"
#include "tests/support/FakeHostNetwork.h"

#include <gmock/gmock.h>

namespace {

constexpr std::uint64_t gigabit = 1'000'000'000;

TEST(InterfaceHandlerGigE, answersTheSpeedOfTheFirstAdapterWithAnAddress) {
    auto network = std::make_shared<FakeHostNetwork>();
    network->add(7, {192, 168, 1, 10}, gigabit);
    network->add(8, {192, 168, 1, 10}, 10 * gigabit);
    network->add(9, {10, 0, 0, 1}, 5 * gigabit);
    const InterfaceHandlerGigE handler({network});
    network->entries.clear();
    EXPECT_EQ(handler.GetLinkSpeed(0xC0A8010A), gigabit) << "as when it was made";
    EXPECT_EQ(handler.GetLinkSpeed(0x0A000001), 5 * gigabit);
    EXPECT_EQ(handler.GetLinkSpeed(0x0A000002), 0U);
    EXPECT_EQ(handler.GetLinkSpeed(0x1'0A000001), 0U) << "all 64 bits count";

    network->givesTable = false;
    const CapturedLog errors(std::cerr);
    EXPECT_EQ(InterfaceHandlerGigE({network}).GetLinkSpeed(0xC0A8010A), 0U);
    EXPECT_EQ(errors.text(), "Unable to get ip address table\n");
}

TEST(NetworkAdapter, takesItsFieldsFromRowAndEntry) {
    const auto bytes = FakeHostNetwork::inNetworkOrder;
    const host::AddressRow row{3,
                               bytes({192, 168, 1, 10}),
                               bytes({255, 255, 255, 0}),
                               bytes({192, 168, 1, 255}),
                               65535,
                               0x8001};
    host::InterfaceEntry entry;
    entry.transmitLinkSpeed = gigabit;
    entry.alias = u"Camera \u0142an"; // the low byte of U+0142 is B
    entry.description = u"Gigabit";
    EXPECT_THAT(makeNetworkAdapter(row, entry),
                testing::FieldsAre(3U, 0xC0A8010A, 0xFFFFFF00, 0xC0A801FF, 65535U, 0x8001U, gigabit,
                                   entry.physicalAddress.data(), "Camera Ban", "G"));
}

} // namespace
