// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerUSB.h"
#include "engine/host/CompositeHostNetwork.h"
#include "engine/host/CompositeHostUsbTree.h"
#include "tests/support/FakeHostNetwork.h"
#include "tests/support/FakeHostUsbTree.h"

#include <gmock/gmock.h>

namespace {

using Kind = FakeUsbNode::Kind;

TEST(CompositeHostNetwork, tellsAdaptersOfOneIndexApart) {
    auto first = std::make_shared<FakeHostNetwork>();
    first->add(1, {10, 0, 0, 1}, 100);
    auto second = std::make_shared<FakeHostNetwork>();
    second->add(1, {10, 0, 0, 2}, 200);
    second->rows.push_back(second->rows.front()); // a second address of the same adapter
    const host::CompositeHostNetwork network({first, second});

    std::vector<host::AddressRow> rows(5);
    ASSERT_TRUE(network.addressTable(rows));
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].address, first->rows[0].address);
    EXPECT_NE(rows[0].interfaceIndex, rows[1].interfaceIndex);
    EXPECT_EQ(rows[1].interfaceIndex, rows[2].interfaceIndex);
    EXPECT_EQ(network.interfaceEntry(rows[0].interfaceIndex).transmitLinkSpeed, 100U);
    EXPECT_EQ(network.interfaceEntry(rows[1].interfaceIndex).transmitLinkSpeed, 200U);
    EXPECT_EQ(network.interfaceEntry(999).transmitLinkSpeed, 0U);
}

/// Controller, hub and camera of the device instances 1 to 3, as every tree begins.
std::shared_ptr<FakeHostUsbTree> treeWithCamera(std::uint32_t bus, std::uint8_t speed) {
    auto tree = std::make_shared<FakeHostUsbTree>();
    const std::string name = std::to_string(bus);
    FakeUsbNode controller;
    controller.instanceId = R"(PCI\)" + name;
    controller.busNumber.value = bus;
    FakeUsbNode hub;
    hub.kind = Kind::Hub;
    hub.instanceId = R"(USB\HUB)" + name;
    hub.path = "HUB#" + name;
    hub.parent = tree->add(controller);
    hub.ports[1] = {host::PortConnection{1, speed}, 0};
    FakeUsbNode camera;
    camera.kind = Kind::Device;
    camera.path = "USB#VID_4D52&PID_0001#" + name + '#';
    camera.location.value = u"Port_#0001.Hub_#0001";
    camera.parent = tree->add(hub);
    tree->add(camera);
    return tree;
}

TEST(CompositeHostUsbTree, tellsDevicesOfOneInstanceApart) {
    InterfaceHandlerUSB handler(std::make_shared<host::CompositeHostUsbTree>(
        std::vector<std::shared_ptr<host::HostUsbTree>>{treeWithCamera(1, 2),
                                                        treeWithCamera(2, 3)}));
    handler.rebuild();
    EXPECT_EQ(handler.GetSpeed("1-0-0"), 480'000'000U);
    EXPECT_EQ(handler.GetSpeed("2-0-0"), 5'000'000'000U);
}

} // namespace
