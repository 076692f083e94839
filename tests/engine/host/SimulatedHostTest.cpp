// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerGigE.h"
#include "engine/InterfaceHandlerUSB.h"
#include "engine/host/Host.h"
#include "engine/host/HostNetwork.h"
#include "engine/host/HostUsbTree.h"
#include "engine/host/SimulatedHostUsbTree.h"
#include "tests/support/CapturedLog.h"

#include <gmock/gmock.h>

namespace {

using Kind = SimulatedUsbNode::Kind;

const std::string cameraPath = "USB#VID_4D52&PID_0001#A1#";

SimulatedUsbNode makeNode(Kind kind, const std::string& name, int parent, std::uint32_t port,
                          std::uint64_t bitsPerSecond) {
    SimulatedUsbNode node;
    node.kind = kind;
    node.instanceId = (kind == Kind::Controller ? R"(PCI\)" : R"(USB\)") + name;
    node.path = name;
    node.parent = parent;
    node.port = port;
    node.bitsPerSecond = bitsPerSecond;
    return node;
}

/// A controller, its root hub, a hub on port 12 of that, and a camera on port 12 of the latter.
SimulatedHost hostWithCamera(std::uint64_t bitsPerSecond) {
    SimulatedHost simulated;
    simulated.usbNodes = {makeNode(Kind::Controller, "controller", -1, 0, 0),
                          makeNode(Kind::Hub, "HUB#root", 0, 0, 480'000'000),
                          makeNode(Kind::Hub, "HUB#external", 1, 12, 480'000'000),
                          makeNode(Kind::Device, cameraPath, 2, 12, bitsPerSecond)};
    simulated.usbNodes[0].busNumber = 3;
    simulated.usbNodes[0].pciAddress = 0x00140001;
    return simulated;
}

TEST(SimulatedHost, givesTheUsbHandlerTheSpeedOfAPort) {
    const std::pair<std::uint64_t, std::optional<std::uint64_t>> cases[] = {
        {0, std::nullopt},
        {1'500'000, 1'500'000},
        {12'000'000, 12'000'000},
        {480'000'000, 480'000'000},
        {5'000'000'000, 5'000'000'000},
        {10'000'000'000, 5'000'000'000}, // super speed is the highest that is told apart
    };
    for (const auto& [bitsPerSecond, expected] : cases) {
        InterfaceHandlerUSB handler(host::makeUsbTrees(hostWithCamera(bitsPerSecond)));
        const CapturedLog log;
        handler.rebuild();
        EXPECT_EQ(handler.GetSpeed("USB 3-20-1"), expected) << bitsPerSecond;
        EXPECT_EQ(log.text(), "");
    }
}

TEST(SimulatedHost, tellsAPortAsAHubDriverDoes) {
    host::SimulatedHostUsbTree tree(hostWithCamera(10'000'000'000).usbNodes);
    EXPECT_EQ(tree.locationInfo(4).value, u"Port_#0012.Hub_#0002");
    EXPECT_NE(tree.locationInfo(1).result, 0U) << "a controller is on no port";
    EXPECT_NE(tree.busNumber(2).result, 0U) << "a hub is not on the PCI bus";
    EXPECT_EQ(tree.openHub("HUB#unknown"), nullptr);
    EXPECT_EQ(tree.openHub(cameraPath), nullptr);

    const auto hub = tree.openHub("HUB#external");
    ASSERT_NE(hub, nullptr);
    EXPECT_EQ(hub->connection(12)->speed, 2);
    EXPECT_EQ(hub->connectionFlagsV2(12), 0b1111U);
    EXPECT_EQ(hub->connection(1)->status, 0U) << "nothing is connected there";
}

TEST(SimulatedHost, givesTheNetworkHandlerTheSpeedOfAnAdapter) {
    SimulatedHost simulated;
    simulated.adapters = {{1, 0xC0A80101, 0xFFFFFF00, 1'000'000'000, "camera net"},
                          {2, 0xC0A80201, 0xFFFF0000, 10'000'000'000, "fast net"}};
    const host::HostNetworks networks = host::makeNetworks(simulated);
    const InterfaceHandlerGigE handler(networks);
    EXPECT_EQ(handler.GetLinkSpeed(0xC0A80101), 1'000'000'000U);
    EXPECT_EQ(handler.GetLinkSpeed(0xC0A80201), 10'000'000'000U);

    std::vector<host::AddressRow> rows;
    ASSERT_TRUE(networks[0]->addressTable(rows));
    ASSERT_GE(rows.size(), 2U);
    const auto adapter =
        makeNetworkAdapter(rows[1], networks[0]->interfaceEntry(rows[1].interfaceIndex));
    EXPECT_EQ(adapter.broadcast, 0xC0A8FFFFU);
    EXPECT_EQ(adapter.alias, "fast net");
}

} // namespace
