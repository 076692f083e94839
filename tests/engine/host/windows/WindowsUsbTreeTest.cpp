// SPDX-License-Identifier: BSD-3-Clause
#include "engine/InterfaceHandlerUSB.h"
#include "engine/host/HostUsbTree.h"
#include "tests/engine/host/windows/SeededUsbTree.h"
#include "tests/support/CapturedLog.h"

#include <gmock/gmock.h>

namespace {

constexpr std::uint64_t highSpeed = 480'000'000;
constexpr std::uint64_t superSpeed = 5'000'000'000;

constexpr HubPort usb3Port{true, true, 1, 2, 0b0001};
constexpr HubPort usb2Port{true, true, 1, 2, 0};
constexpr std::uint32_t port = 3;
const std::wstring onPort3 = L"Port_#0003.Hub_#0001";
const std::wstring cameraId = LR"(VID_4D52&PID_0001\A1B2)";
const std::string cameraPath =
    R"("\\?\usb#vid_4d52&pid_0001#a1b2#{a5dcbf10-6530-11d2-901f-00c04fb951ed}")";
const std::string noPort = "Debug:Cannot get port location for device " + cameraPath + '\n';

/// A camera on port 3 of the root hub of a controller.
struct Scene {
    HubPort answers = usb3Port;
    std::optional<std::wstring> location = onPort3;
    std::wstring id = cameraId;
    std::optional<UINT32> bus = 0;
    std::optional<UINT32> address = 0x00140002;
    bool hubOpens = true;
};

struct Case {
    const char* name;
    Scene scene;
    std::optional<std::uint64_t> speed;
    std::string log = {};
};

/// Cases of what is read from Windows; InterfaceHandlerUSBTest has those of what is decided.
const Case cases[] = {
    {"Usb3Port", {usb3Port}, superSpeed},
    {"Usb2Port", {usb2Port}, highSpeed},
    {"NoSecondStructure", {{true, false, 1, 2, 0}}, highSpeed},
    {"Full", {{true, true, 1, 1, 0b0001}}, 12'000'000},
    {"NotConnected", {{true, true, 0, 2, 1}}, std::nullopt},
    {"NoFirstStructure", {{false, true, 1, 2, 0b0001}}, std::nullopt},
    {"PortTheHubHasNot", {usb3Port, L"Port_#0099.Hub_#0001"}, std::nullopt},
    {"UnopenableHub",
     {usb3Port, onPort3, cameraId, 0, 0x00140002, false},
     std::nullopt,
     "Debug:Could not get USB speed for device " + cameraPath + '\n'},
    {"LongSerial",
     {usb3Port, onPort3, LR"(VID_4D52&PID_0001\)" + std::wstring(170, L'7')},
     superSpeed},
    {"LocationWithUmlauts", {usb3Port, L"R\u00fcckseite \u2013 Port_#0003.Hub_#0001"}, superSpeed},
    {"EmptyLocation", {usb3Port, L""}, std::nullopt, noPort},
    {"NoLocation", {usb3Port, std::nullopt}, std::nullopt, noPort},
    {"NoBusNumber",
     {usb3Port, onPort3, cameraId, std::nullopt},
     std::nullopt,
     "Debug:Cannot get DEVPKEY_Device_BusNumber. CM_Get_DevNode_PropertyW ret: 37 devInst: "},
    {"NoAddress",
     {usb3Port, onPort3, cameraId, 0, std::nullopt},
     std::nullopt,
     "Debug:Cannot get DEVPKEY_Device_Address. CM_Get_DevNode_PropertyW ret: 37 devInst: "},
};

class WindowsUsbTree : public testing::TestWithParam<Case> {
protected:
    ~WindowsUsbTree() override {
        EXPECT_EQ(SeededUsbTree::openHandles(), 0U) << "every hub that was opened is closed";
    }

    std::optional<std::uint64_t> speedNow(const std::string& controller) {
        m_handler.rebuild();
        return m_handler.GetSpeed("MRD USB Interface " + controller);
    }

    SeededUsbTree m_tree;
    InterfaceHandlerUSB m_handler;
    const CapturedLog m_log;
};

TEST_P(WindowsUsbTree, givesTheSpeedOfAPort) {
    const Scene& scene = GetParam().scene;
    const DEVINST controller = m_tree.addController(L"3&1&0&A2", scene.bus, scene.address);
    const Ports ports{{port, scene.answers}};
    m_tree.addDevice(m_tree.addHub(controller, L"4&1", ports, scene.hubOpens), scene.id,
                     scene.location);

    EXPECT_EQ(speedNow("0-20-2"), GetParam().speed);
    const bool namesDevice = GetParam().log.find("devInst: ") != std::string::npos;
    EXPECT_EQ(m_log.text(),
              GetParam().log + (namesDevice ? std::to_string(controller) + '\n' : ""));
}

INSTANTIATE_TEST_SUITE_P(OneCamera, WindowsUsbTree, testing::ValuesIn(cases),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(WindowsUsbTree, separatesCamerasAndControllers) {
    // Names of about the maximum length that differ in the last character only.
    const std::wstring name(180, L'h');
    const DEVINST first = m_tree.addHub(m_tree.addController(L"a", 0, 0x00140000), name + L'1',
                                        {{1, usb3Port}, {2, usb2Port}, {port, usb3Port}});
    const DEVINST root = m_tree.addHub(m_tree.addController(L"b", 0, 0x001D0001), name + L'2',
                                       {{port, usb3Port}, {5, usb3Port}});
    const DEVINST external = m_tree.addHub(root, L"external", {{port, usb2Port}});
    m_tree.addDevice(first, LR"(VID_4D52&PID_0001\B)", L"Port_#0002.Hub_#0001");
    const DEVINST fastest =
        m_tree.addDevice(first, LR"(VID_4D52&PID_0001\A)", L"Port_#0001.Hub_#0001");
    m_tree.addDevice(first, LR"(VID_046D&PID_C52B\MOUSE)", onPort3);
    m_tree.addDevice(external, LR"(VID_4D52&PID_0001\C)", onPort3);
    EXPECT_EQ(speedNow("0-20-0"), superSpeed);
    EXPECT_EQ(speedNow("0-29-1"), highSpeed);

    m_tree.unplug(fastest);
    EXPECT_EQ(speedNow("0-20-0"), highSpeed);
    EXPECT_EQ(m_log.text(), "");
}

TEST_F(WindowsUsbTree, freesItsLists) {
    m_tree.addDevice(std::nullopt, cameraId, onPort3);
    const auto tree = host::makeSystemUsbTree();
    // Wine numbers the devices of each list, and uses the numbers of a freed list again.
    const host::DeviceInstance first = tree->devices().at(0).instance;
    EXPECT_EQ(tree->devices().at(0).instance, first);
    const auto held = tree->devices();
    EXPECT_NE(tree->devices().at(0).instance, first);
    EXPECT_EQ(tree->instanceId(held.at(0).instance), R"(USB\VID_4D52&PID_0001\A1B2)");
}

TEST_F(WindowsUsbTree, leavesOutACameraWithoutAController) {
    EXPECT_EQ(speedNow("0-20-0"), std::nullopt);
    EXPECT_EQ(m_log.text(), "");
    m_tree.addDevice(std::nullopt, LR"(VID_4D52&PID_0001\A)", onPort3);
    m_tree.addDevice(m_tree.addHub(std::nullopt, L"hub", {{port, usb3Port}}), cameraId, onPort3);
    EXPECT_EQ(speedNow("0-20-0"), std::nullopt);
}

} // namespace
