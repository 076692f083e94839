// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerUSB.h"

#include "tests/support/CapturedLog.h"
#include "tests/support/FakeHostUsbTree.h"

#include <functional>
#include <gmock/gmock.h>

namespace {

using Kind = FakeUsbNode::Kind;

constexpr std::uint64_t highSpeed = 480'000'000;
constexpr std::uint64_t superSpeed = 5'000'000'000;

const FakeUsbPort usb3Port{host::PortConnection{1, 2}, 1};
const FakeUsbPort usb2Port{host::PortConnection{1, 2}, 0};
const std::string cameraPath = R"(\\?\USB#VID_4D52&PID_0001#A1#{a5dcbf10})";

/// Builds the usual trees: controllers, hubs below them, cameras on their ports.
class Tree : public FakeHostUsbTree {
public:
    host::DeviceInstance addController(std::uint32_t bus, std::uint32_t address) {
        FakeUsbNode node;
        node.instanceId = R"(PCI\VEN_8086\)" + std::to_string(bus) + std::to_string(address);
        node.busNumber.value = bus;
        node.address.value = address;
        return add(node);
    }

    host::DeviceInstance addHub(host::DeviceInstance parent, const std::string& name) {
        FakeUsbNode node;
        node.kind = Kind::Hub;
        node.instanceId = R"(USB\HUB\)" + name;
        node.path = R"(\\?\HUB#)" + name;
        node.parent = parent;
        return add(node);
    }

    host::DeviceInstance addCamera(host::DeviceInstance hub, std::uint32_t port,
                                   const FakeUsbPort& answers) {
        FakeUsbNode node;
        node.kind = Kind::Device;
        node.path = cameraPath;
        node.parent = hub;
        const std::string location = "Port_#000" + std::to_string(port) + ".Hub_#0001";
        node.location.value.assign(location.begin(), location.end());
        at(hub).ports[port] = answers;
        return add(node);
    }
};

struct Case {
    const char* name;
    /// What is different from one camera on a USB 3 port of the root hub of one controller.
    std::function<void(Tree&)> change;
    std::optional<std::uint64_t> speed;
    std::string log = {};
};

constexpr host::DeviceInstance controller = 1;
constexpr host::DeviceInstance hub = 2;
constexpr host::DeviceInstance camera = 3;
constexpr std::uint32_t port = 3;

std::function<void(Tree&)> answers(const FakeUsbPort& given) {
    return [given](Tree& tree) {
        tree.at(hub).ports[port] = given;
    };
}

std::function<void(Tree&)> path(const std::string& given) {
    return [given](Tree& tree) {
        tree.at(camera).path = given;
    };
}

const std::string noPort = "Debug:Cannot get port location for device \"" + cameraPath + "\"\n";
const std::string noSpeed = "Debug:Could not get USB speed for device \"" + cameraPath + "\"\n";

const Case cases[] = {
    {"Usb3Port", [](Tree&) {}, superSpeed},
    {"Usb2Port", answers(usb2Port), highSpeed},
    {"SuperSpeedPlus", answers({host::PortConnection{1, 2}, 0b0100}), superSpeed},
    {"OnlyCapable", answers({host::PortConnection{1, 2}, 0b1010}), highSpeed},
    {"NoFlags", answers({host::PortConnection{1, 2}, std::nullopt}), highSpeed},
    {"OnlyHighIsCorrected", answers({host::PortConnection{1, 1}, 1}), 12'000'000},
    {"Low", answers({host::PortConnection{1, 0}, 0}), 1'500'000},
    {"Super", answers({host::PortConnection{1, 3}, 0}), superSpeed},
    {"UnknownSpeed", answers({host::PortConnection{1, 4}, 1}), std::nullopt},
    {"NotConnected", answers({host::PortConnection{0, 2}, 1}), std::nullopt},
    {"FailedEnumeration", answers({host::PortConnection{2, 2}, 1}), std::nullopt},
    {"NoConnection", answers({std::nullopt, 1}), std::nullopt},
    {"HubNotOpenable", [](Tree& tree) { tree.at(hub).opens = false; }, std::nullopt, noSpeed},
    {"HubNotListed", [](Tree& tree) { tree.at(hub).kind = Kind::Other; }, std::nullopt, noSpeed},
    {"LocationWithoutPort", [](Tree& tree) { tree.at(camera).location.value = u"0000.001a.0000"; },
     std::nullopt, noPort},
    {"NoLocation",
     [](Tree& tree) {
         tree.at(camera).location = {37, {}};
     },
     std::nullopt, noPort},
    {"NoBusNumber", [](Tree& tree) { tree.at(controller).busNumber.result = 37; }, std::nullopt,
     "Debug:Cannot get DEVPKEY_Device_BusNumber. CM_Get_DevNode_PropertyW ret: 37 devInst: 1\n"},
    {"NoAddress", [](Tree& tree) { tree.at(controller).address.result = 13; }, std::nullopt,
     "Debug:Cannot get DEVPKEY_Device_Address. CM_Get_DevNode_PropertyW ret: 13 devInst: 1\n"},
    {"NoParent", [](Tree& tree) { tree.at(camera).parent = 0; }, std::nullopt},
    {"NoController", [](Tree& tree) { tree.at(hub).parent = 0; }, std::nullopt},
    {"PciNotAtTheStart", [](Tree& tree) { tree.at(controller).instanceId = R"(ACPI\PCI)"; },
     std::nullopt},
    {"OtherVendor", path("USB#VID_4D53&PID_0001#A1#"), std::nullopt},
    {"OtherProduct", path("USB#VID_4D52&PID_0002#A1#"), std::nullopt},
    {"LowerCase", path("usb#vid_4d52&pid_0001#a1#"), superSpeed},
};

TEST(InterfaceHandlerUSB, hasTheSpeedOfThePortOfACamera) {
    for (const Case& tested : cases) {
        SCOPED_TRACE(tested.name);
        auto tree = std::make_shared<Tree>();
        tree->addController(0, 0x00140002);
        tree->addHub(controller, "root");
        tree->addCamera(hub, port, usb3Port);
        tested.change(*tree);

        InterfaceHandlerUSB handler({tree});
        const CapturedLog log;
        handler.rebuild();
        EXPECT_EQ(handler.GetSpeed("MRD USB 0-20-2"), tested.speed);
        EXPECT_EQ(log.text(), tested.log);
    }
}

TEST(InterfaceHandlerUSB, hasTheHighestSpeedOfTheCamerasThatAreThere) {
    const auto tree = std::make_shared<Tree>();
    InterfaceHandlerUSB handler({tree});
    const auto root = tree->addHub(tree->addController(4, 0), "root");
    // What the root hub tells of its own port 3 does not count for the camera behind the next hub.
    tree->at(root).ports[3] = {host::PortConnection{1, 0}, 0};
    const auto slow = tree->addCamera(tree->addHub(root, "external"), 3, usb2Port);
    const auto fast = tree->addCamera(root, 1, usb3Port);
    tree->addCamera(root, 2, usb2Port);
    EXPECT_EQ(handler.GetSpeed("4-0-0"), std::nullopt) << "nothing is known before a rebuild";
    handler.rebuild();
    EXPECT_EQ(handler.GetSpeed("4-0-0"), superSpeed);
    const CapturedLog log;
    tree->at(fast).location = {37, {}};
    handler.rebuild();
    EXPECT_EQ(handler.GetSpeed("4-0-0"), highSpeed) << "only the camera that fails is left out";
    EXPECT_EQ(log.text(), noPort);
    tree->at(root).kind = Kind::Other;
    tree->at(fast).kind = Kind::Other;
    handler.rebuild();
    EXPECT_EQ(handler.GetSpeed("4-0-0"), highSpeed) << "of the camera behind the external hub";
    tree->at(slow).kind = Kind::Other;
    handler.rebuild();
    EXPECT_EQ(handler.GetSpeed("4-0-0"), std::nullopt);
}

TEST(InterfaceHandlerUSB, takesTheFirstKeyThatOccursAnywhereInTheId) {
    const auto tree = std::make_shared<Tree>();
    tree->addCamera(tree->addHub(tree->addController(10, 0x00140000), "a"), 1, usb2Port);
    tree->addCamera(tree->addHub(tree->addController(0, 0x00140000), "b"), 1, usb3Port);
    tree->addCamera(tree->addHub(tree->addController(2, 0x00140000), "c"), 1, usb2Port);
    InterfaceHandlerUSB handler({tree});
    handler.rebuild();

    EXPECT_EQ(handler.GetSpeed("USB(0-20-0)"), superSpeed);
    EXPECT_EQ(handler.GetSpeed("USB(10-20-0)"), superSpeed) << "0-20-0 is the first within it";
    EXPECT_EQ(handler.GetSpeed("USB(2-20-0)"), highSpeed);
    EXPECT_EQ(handler.GetSpeed("USB(3-20-1)"), std::nullopt);
    EXPECT_EQ(handler.GetSpeed(""), std::nullopt);
}

} // namespace
