// SPDX-License-Identifier: BSD-3-Clause
#include "cli/AdapterLoad.h"

#include <gtest/gtest.h>

namespace {

using namespace cli;
using platform::NetworkCount;

TEST(AdapterLoad, isThatOfTheWireWithWhatWasDropped) {
    platform::NetworkCounters moved;
    moved[NetworkCount::AdapterReceivedBytes] = 151'400'000;
    EXPECT_TRUE(adapterLoad(moved, 2, 1e9).isEmpty()) << "of an unknown number of packets";
    moved[NetworkCount::AdapterReceived] = 100'000;
    EXPECT_TRUE(adapterLoad(moved, 0, 1e9).isEmpty());
    EXPECT_FALSE(adapterLoad(moved, 2, 0).contains(QStringLiteral("loadPercent")));
    QJsonObject load = adapterLoad(moved, 2, 1e9);
    EXPECT_DOUBLE_EQ(load[QStringLiteral("bytesPerSecond")].toDouble(), 75.7e6);
    EXPECT_DOUBLE_EQ(load[QStringLiteral("loadPercent")].toDouble(), 61.52)
        << "100,000 frames of 1538 bytes on the wire";

    addAdapterDrops(load, moved);
    const auto text = [&load] {
        return loadText({{QStringLiteral("adapter"), load}}).toStdString();
    };
    EXPECT_EQ(text(), ", receives 75.7 MB/s (62 %)");
    EXPECT_FALSE(load.contains(QStringLiteral("missedPackets"))) << "not known";
    moved[NetworkCount::AdapterMissed] = 40;
    moved[NetworkCount::AdapterFifoErrors] = 30;
    moved[NetworkCount::AdapterDropped] = 2;
    addAdapterDrops(load, moved);
    EXPECT_EQ(text(), ", receives 75.7 MB/s (62 %), had no room for 40 packets");
    EXPECT_EQ(loadText({}), QString());
}

} // namespace
