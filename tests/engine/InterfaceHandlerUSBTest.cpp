// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerUSB.h"

#include "engine/host/SimulatedHostUsbTree.h"
#include "tests/support/CapturedLog.h"

#include <functional>
#include <gmock/gmock.h>

namespace {

using host::PortConnection;
using Text = host::Property<std::u16string>;
using Kind = SimulatedUsbNode::Kind;

constexpr std::uint64_t highSpeed = 480'000'000;
constexpr std::uint64_t superSpeed = 5'000'000'000;
const std::string cameraPath = R"(\\?\USB#VID_4D52&PID_0001#A1#{a5dcbf10})";

SimulatedUsbNode controllerNode(std::uint32_t bus, std::uint32_t address) {
    SimulatedUsbNode node;
    node.kind = Kind::Controller;
    node.instanceId = R"(PCI\VEN_8086&DEV_A36D)";
    node.busNumber = bus;
    node.pciAddress = address;
    return node;
}

SimulatedUsbNode nodeOnPort(Kind kind, const std::string& path, int parent, std::uint32_t port,
                            std::uint64_t bitsPerSecond) {
    SimulatedUsbNode node;
    node.kind = kind;
    node.instanceId = R"(USB\)" + path;
    node.path = path;
    node.parent = parent;
    node.port = port;
    node.bitsPerSecond = bitsPerSecond;
    return node;
}

/// Answers of a hub for each port; nothing where the request fails.
struct Answers {
    std::optional<PortConnection> connection;
    std::optional<std::uint32_t> flags;
};

/// What is different from one camera on port 3 of the root hub of a controller, at super speed.
struct Faults {
    std::string controllerId = controllerNode(0, 0).instanceId;
    std::string path = cameraPath;
    std::uint64_t bitsPerSecond = superSpeed;
    std::optional<Answers> answers;
    std::optional<Text> location;
    /// Positions; -1: none.
    int parentOfHub = 0;
    int parentOfCamera = 1;
    std::uint32_t busResult = 0;
    std::uint32_t addressResult = 0;
    bool opensHub = true;
    bool listsHub = true;
    bool listsDevices = true;
};

constexpr host::DeviceInstance hub = 2;
constexpr host::DeviceInstance camera = 3;

class FaultyTree : public host::SimulatedHostUsbTree {
public:
    explicit FaultyTree(std::vector<SimulatedUsbNode> nodes, Faults given = {})
        : SimulatedHostUsbTree(std::move(nodes)), faults(std::move(given)) {}

    std::vector<host::DeviceInterface> hubs() override {
        return faults.listsHub ? SimulatedHostUsbTree::hubs() : decltype(hubs())();
    }
    std::vector<host::DeviceInterface> devices() override {
        return faults.listsDevices ? SimulatedHostUsbTree::devices() : decltype(devices())();
    }
    Text locationInfo(host::DeviceInstance instance) override {
        return instance == camera && faults.location ? *faults.location
                                                     : SimulatedHostUsbTree::locationInfo(instance);
    }
    host::Property<std::uint32_t> busNumber(host::DeviceInstance instance) override {
        return {faults.busResult, SimulatedHostUsbTree::busNumber(instance).value};
    }
    host::Property<std::uint32_t> address(host::DeviceInstance instance) override {
        return {faults.addressResult, SimulatedHostUsbTree::address(instance).value};
    }
    std::unique_ptr<host::UsbHub> openHub(const std::string& path) override {
        if (!faults.opensHub)
            return nullptr;
        if (!faults.answers)
            return SimulatedHostUsbTree::openHub(path);
        return std::make_unique<Hub>(*faults.answers);
    }

    Faults faults;

private:
    struct Hub : host::UsbHub {
        explicit Hub(const Answers& given) : answers(given) {}
        std::optional<PortConnection> connection(std::uint32_t) override {
            return answers.connection;
        }
        std::optional<std::uint32_t> connectionFlagsV2(std::uint32_t) override {
            return answers.flags;
        }
        const Answers answers;
    };
};

template <class Field, class Value> std::function<void(Faults&)> with(Field field, Value value) {
    return [field, value](Faults& faults) {
        faults.*field = static_cast<std::decay_t<decltype(faults.*field)>>(value);
    };
}

std::function<void(Faults&)> answers(std::optional<PortConnection> connection,
                                     std::optional<std::uint32_t> flags) {
    return with(&Faults::answers, Answers{connection, flags});
}

TEST(InterfaceHandlerUSB, hasTheSpeedOfThePortOfACamera) {
    const std::string noPort = "Debug:Cannot get port location for device \"" + cameraPath + "\"\n";
    const std::string noSpeed = "Debug:Could not get USB speed for device \"" + cameraPath + "\"\n";
    const struct {
        const char* name;
        std::function<void(Faults&)> change;
        std::optional<std::uint64_t> speed;
        std::string log = {};
    } cases[] = {
        {"super", [](Faults&) {}, superSpeed},
        {"super plus", with(&Faults::bitsPerSecond, 2 * superSpeed), 2 * superSpeed},
        {"high", with(&Faults::bitsPerSecond, highSpeed), highSpeed},
        {"full", with(&Faults::bitsPerSecond, 12'000'000), 12'000'000},
        {"low", with(&Faults::bitsPerSecond, 1'500'000), 1'500'000},
        {"nothing", with(&Faults::bitsPerSecond, 0), std::nullopt},
        {"at super plus", answers(PortConnection{1, 2}, 0b0100), superSpeed},
        {"only capable", answers(PortConnection{1, 2}, 0b1010), highSpeed},
        {"no flags", answers(PortConnection{1, 2}, std::nullopt), highSpeed},
        {"only high is corrected", answers(PortConnection{1, 1}, 1), 12'000'000},
        {"super in the first structure", answers(PortConnection{1, 3}, 0), superSpeed},
        {"unknown speed", answers(PortConnection{1, 4}, 1), std::nullopt},
        {"not connected", answers(PortConnection{0, 2}, 1), std::nullopt},
        {"failed enumeration", answers(PortConnection{2, 2}, 1), std::nullopt},
        {"no connection", answers(std::nullopt, 1), std::nullopt},
        {"hub not openable", with(&Faults::opensHub, false), std::nullopt, noSpeed},
        {"hub not listed", with(&Faults::listsHub, false), std::nullopt, noSpeed},
        {"location without port", with(&Faults::location, Text{0, u"0000.001a.0000"}), std::nullopt,
         noPort},
        {"no location", with(&Faults::location, Text{37, {}}), std::nullopt, noPort},
        {"no bus number", with(&Faults::busResult, 37), std::nullopt,
         "Debug:Cannot get DEVPKEY_Device_BusNumber. CM_Get_DevNode_PropertyW ret: 37 devInst: "
         "1\n"},
        {"no address", with(&Faults::addressResult, 13), std::nullopt,
         "Debug:Cannot get DEVPKEY_Device_Address. CM_Get_DevNode_PropertyW ret: 13 devInst: 1\n"},
        {"no parent", with(&Faults::parentOfCamera, -1), std::nullopt},
        {"no controller", with(&Faults::parentOfHub, -1), std::nullopt},
        {"PCI not at the start", with(&Faults::controllerId, R"(ACPI\PCI)"), std::nullopt},
        {"other vendor", with(&Faults::path, "USB#VID_4D53&PID_0001#A1#"), std::nullopt},
        {"other product", with(&Faults::path, "USB#VID_4D52&PID_0002#A1#"), std::nullopt},
        {"lower case", with(&Faults::path, "usb#vid_4d52&pid_0001#a1#"), superSpeed},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        Faults faults;
        each.change(faults);
        std::vector<SimulatedUsbNode> nodes{
            controllerNode(0, 0x00140002),
            nodeOnPort(Kind::Hub, "root", faults.parentOfHub, 0, highSpeed),
            nodeOnPort(Kind::Device, faults.path, faults.parentOfCamera, 3, faults.bitsPerSecond)};
        nodes[0].instanceId = faults.controllerId;
        InterfaceHandlerUSB handler({std::make_shared<FaultyTree>(nodes, faults)});
        const CapturedLog log;
        handler.rebuild();
        EXPECT_EQ(handler.GetSpeed("MRD USB 0-20-2"), each.speed);
        EXPECT_EQ(log.text(), each.log);
    }
}

TEST(InterfaceHandlerUSB, hasTheHighestSpeedOfTheCamerasThatAreThere) {
    // What the root hub tells of its own port 3 does not count for the camera behind the next hub.
    const auto tree = std::make_shared<FaultyTree>(
        std::vector{controllerNode(4, 0), nodeOnPort(Kind::Hub, "root", 0, 0, highSpeed),
                    nodeOnPort(Kind::Device, cameraPath, 1, 1, superSpeed),
                    nodeOnPort(Kind::Hub, "external", 1, 3, 12'000'000),
                    nodeOnPort(Kind::Device, cameraPath, 3, 3, highSpeed),
                    nodeOnPort(Kind::Device, cameraPath, 1, 2, 12'000'000)});
    InterfaceHandlerUSB handler({tree});
    EXPECT_EQ(handler.GetSpeed("4-0-0"), std::nullopt) << "nothing is known before a rebuild";
    handler.rebuild();
    EXPECT_EQ(handler.GetSpeed("4-0-0"), superSpeed);
    const CapturedLog log;
    tree->faults.location = Text{37, {}};
    handler.rebuild();
    EXPECT_EQ(handler.GetSpeed("4-0-0"), highSpeed) << "only the camera that fails is left out";
    tree->faults.listsDevices = false;
    handler.rebuild();
    EXPECT_EQ(handler.GetSpeed("4-0-0"), std::nullopt);
}

TEST(InterfaceHandlerUSB, takesTheFirstKeyThatOccursAnywhereInTheId) {
    std::vector<SimulatedUsbNode> nodes;
    for (const auto& [bus, speed] :
         {std::pair(10U, highSpeed), {0U, superSpeed}, {2U, highSpeed}}) {
        const int first = static_cast<int>(nodes.size());
        nodes.push_back(controllerNode(bus, 0x00140000));
        nodes.push_back(nodeOnPort(Kind::Hub, std::to_string(bus), first, 0, highSpeed));
        nodes.push_back(nodeOnPort(Kind::Device, cameraPath, first + 1, 1, speed));
    }
    InterfaceHandlerUSB handler({std::make_shared<FaultyTree>(nodes)});
    handler.rebuild();
    EXPECT_EQ(handler.GetSpeed("USB(0-20-0)"), superSpeed);
    EXPECT_EQ(handler.GetSpeed("USB(10-20-0)"), superSpeed) << "0-20-0 is the first within it";
    EXPECT_EQ(handler.controllerKey("USB(10-20-0)"), "10-20-0") << "another than 0-20-0";
    EXPECT_EQ(handler.controllerKey("USB(3-20-1)"), "");
    EXPECT_EQ(handler.GetSpeed("USB(2-20-0)"), highSpeed);
    EXPECT_EQ(handler.GetSpeed("USB(3-20-1)"), std::nullopt);
    EXPECT_EQ(handler.GetSpeed(""), std::nullopt);
}

TEST(SimulatedHostUsbTree, tellsAPortAsAHubDriverDoes) {
    host::SimulatedHostUsbTree tree({controllerNode(3, 0x00140001),
                                     nodeOnPort(Kind::Hub, "root", 0, 0, highSpeed),
                                     nodeOnPort(Kind::Device, cameraPath, 1, 12, 2 * superSpeed)});
    EXPECT_EQ(tree.locationInfo(camera).value, u"Port_#0012.Hub_#0001");
    EXPECT_NE(tree.locationInfo(1).result, 0U) << "a controller is on no port";
    EXPECT_NE(tree.busNumber(hub).result, 0U) << "a hub is not on the PCI bus";
    EXPECT_EQ(tree.openHub("unknown"), nullptr);
    EXPECT_EQ(tree.openHub(cameraPath), nullptr);

    const auto root = tree.openHub("root");
    EXPECT_EQ(root->connection(12)->speed, 2);
    EXPECT_EQ(root->connection(12)->bitsPerSecond, 2 * superSpeed);
    EXPECT_EQ(root->connectionFlagsV2(12), 0b1111U);
    EXPECT_EQ(root->connection(1)->status, 0U) << "nothing is connected there";
}

} // namespace
