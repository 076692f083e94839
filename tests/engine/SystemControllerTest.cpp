// SPDX-License-Identifier: BSD-3-Clause
#include "engine/SystemController.h"

#include "engine/InterfaceHandlerGigE.h"
#include "engine/InterfaceHandlerUSB.h"
#include "engine/host/SimulatedHostNetwork.h"
#include "engine/host/SimulatedHostUsbTree.h"
#include "tests/support/CameraFixture.h"

#include <functional>
#include <limits>

namespace {

using namespace testing;

constexpr std::uint32_t address = 0xC0A8010A;
constexpr auto subnetFeature = "GevInterfaceSubnetIPAddress";

/// An empty tree.
class MockTree : public host::SimulatedHostUsbTree {
public:
    MockTree() : SimulatedHostUsbTree({}) {}
    MOCK_METHOD(std::vector<host::DeviceInterface>, devices, (), (override));
};

class MockUsb : public InterfaceHandlerUSB {
public:
    explicit MockUsb(std::shared_ptr<MockTree> tree) : InterfaceHandlerUSB({std::move(tree)}) {}
    MOCK_METHOD(std::optional<std::uint64_t>, GetSpeed, (const std::string&), (const, override));
};

/// The host has one adapter, of 1 Gbit/s.
std::shared_ptr<InterfaceHandlerGigE> makeGigE() {
    const std::vector<SimulatedAdapter> adapters{{1, address, 0xFFFFFF00, 1'000'000'000, "eth"}};
    return std::make_shared<InterfaceHandlerGigE>(
        host::HostNetworks{std::make_shared<host::SimulatedHostNetwork>(adapters)});
}

class SystemControllerTest : public testing::Test {
protected:
    SystemControllerTest() {
        ON_CALL(*m_system, GetCameras).WillByDefault([this](auto& cameras) {
            cameras.clear();
            for (const auto& parts : m_cameras)
                cameras.push_back(parts->camera);
            return OrvErrorType{OrvErrorSuccess};
        });
        ON_CALL(*m_system, CreateCameraHandler).WillByDefault([this](const auto& camera) {
            return std::make_shared<CameraHandler>(camera, m_features);
        });
        ON_CALL(*m_usb, GetSpeed).WillByDefault(Return(5'000'000'000));
        m_log.clear();
    }

    CameraParts& add(OrvTransportLayerType type, const std::string& interfaceName,
                     const std::string& id = "DEV_1") {
        m_cameras.push_back(std::make_unique<CameraParts>(type, interfaceName, id));
        CameraParts& parts = *m_cameras.back();
        if (type == gige)
            parts.interface->addFeature(subnetFeature, makeIntFeature(address));
        return parts;
    }

    /// The interface list as text: IDs of the interfaces with those of their cameras.
    std::vector<std::string> enumerate() {
        std::vector<std::string> result;
        for (const CameraList& cameras : m_controller.enumerate()) {
            result.push_back(cameras.front()->getCameraInfo().interfaceName + ":");
            for (const auto& camera : cameras)
                result.back() += " " + camera->getCameraInfo().cameraId;
        }
        return result;
    }

    CapturedLog m_log;
    std::vector<std::unique_ptr<CameraParts>> m_cameras;
    std::shared_ptr<FakeFeatureController> m_features = std::make_shared<FakeFeatureController>();
    std::shared_ptr<MockTree> m_tree = std::make_shared<NiceMock<MockTree>>();
    std::shared_ptr<NiceMock<MockSystem>> m_system = std::make_shared<NiceMock<MockSystem>>();
    std::shared_ptr<InterfaceHandlerGigE> m_gige = makeGigE();
    std::shared_ptr<NiceMock<MockUsb>> m_usb = std::make_shared<NiceMock<MockUsb>>(m_tree);
    SystemController m_controller{m_system, m_gige, m_usb};
};

const std::string subnetLine = "Debug:Interface Name: 'Eth 1', IP Address: '192.168.1.10'";
const std::string noSpeed = "Warning:Interface speed not found for interface 'Eth 1'";
const std::string noType = "Debug:Interface type not found for interface: Eth 1";

TEST_F(SystemControllerTest, groupsByInterfaceInTheOrderOfTheirIds) {
    add(gige, "eth b", "1");
    add(gige, "Eth a", "2");
    add(gige, "eth b", "0");
    add(usb, "USB", "3");
    EXPECT_THAT(enumerate(), ElementsAre("Eth a: 2", "USB: 3", "eth b: 1 0"));
    EXPECT_EQ(m_controller.getInterfaceType("eth b"), gige);
    EXPECT_EQ(m_controller.getInterfaceType("USB"), usb);
    EXPECT_EQ(m_controller.getInterfaceSpeed("USB"), 5'000'000'000U);
}

TEST_F(SystemControllerTest, answersOfTheSdkThatFailAreEmpty) {
    EXPECT_CALL(*m_system, QueryVersion)
        .WillOnce(answer(OrvVersionInfo{1, 2, 30}))
        .WillOnce(answer(OrvVersionInfo{1, 2, 30}, OrvErrorIO));
    EXPECT_EQ(m_controller.getSdkVersion(), "1.2.30");
    EXPECT_EQ(m_controller.getSdkVersion(), "");

    const CameraParts& parts = add(gige, "Eth 1");
    EXPECT_CALL(*m_tree, devices()).Times(2);
    enumerate();
    const std::vector<std::shared_ptr<OrvCameraWrapper>> left{parts.camera};
    ON_CALL(*m_system, GetCameras).WillByDefault(answer(left, OrvErrorIO));
    EXPECT_CALL(*parts.camera, StartContinuousImageAcquisition).Times(0);
    EXPECT_THAT(enumerate(), IsEmpty());
    m_controller.startBenchmark(0, false);
}

/// What is wrong with a camera, and what is logged of it.
struct Case {
    std::function<void(CameraParts&)> arrange;
    std::vector<std::string> lines;
};

TEST_F(SystemControllerTest, leavesOutCamerasThatFailOrHaveAnotherTransportLayer) {
    const std::string noLayer = "Warning:Could not get the TransportLayerPtr from camera: ";
    const std::string other = "Debug:TL not supported: [MRD Layer] type=";
    const Case cases[] = {
        {DOES(camera, GetTransportLayer(_), ioError()), {noLayer + "'Camera'" + ioErrorText}},
        {[](CameraParts& p) {
             ON_CALL(*p.camera, GetTransportLayer(_)).WillByDefault(ioError());
             ON_CALL(*p.camera, GetName).WillByDefault(answer(std::string("?"), OrvErrorIO));
         },
         {"Warning:Could not get Camera Name" + ioErrorText, noLayer + "''" + ioErrorText}},
        {DOES(camera, GetInterface(_), ioError()),
         {"Warning:Could not get the InterfacePtr from camera: 'Camera'" + ioErrorText}},
        // A right answer does not count when the call fails.
        {DOES(layer, GetVendor, answer(std::string("Meridane Technologies"), OrvErrorIO)),
         {other + "1"}},
        {DOES(layer, GetName, answer(std::string("MRD Layer"), OrvErrorIO)), {other + "1"}},
        {DOES(layer, GetType, answer(gige, OrvErrorIO)), {other + "1"}},
        {DOES(layer, GetVendor, answer(std::string("Meridane"))), {other + "1"}},
        {DOES(layer, GetName, answer(std::string("mrd Layer"))),
         {"Debug:TL not supported: [mrd Layer] type=1"}},
        {DOES(layer, GetType, answer(OrvTransportLayerType{11})), {other + "11"}},
        {DOES(layer, GetType, answer(OrvTransportLayerType{-4})), {other + "-4"}},
    };
    for (const Case& testCase : cases) {
        m_log.clear();
        m_cameras.clear();
        testCase.arrange(add(gige, "Eth 1", "BAD"));
        add(gige, "Eth 1", "GOOD");
        EXPECT_THAT(enumerate(), ElementsAre("Eth 1: GOOD"));
        auto lines = testCase.lines;
        lines.push_back(subnetLine);
        EXPECT_EQ(m_log.lines(), lines);
    }
}

TEST_F(SystemControllerTest, firstCameraOfAnInterfaceDecidesForGood) {
    add(gige, "Eth 1", "A");
    add(gige, "Eth 1", "B").interface->addFeature(subnetFeature, makeIntFeature(0x0A000001));
    const CameraParts& third = add(gige, "Eth 1", "C");
    ON_CALL(*third.interface, GetType).WillByDefault(answer(usb));
    EXPECT_THAT(enumerate(), ElementsAre("Eth 1: A B C"));
    EXPECT_TRUE(m_log.has("Debug:Interface Name: 'Eth 1', IP Address: '10.0.0.1'"));
    m_cameras.clear();
    EXPECT_THAT(enumerate(), IsEmpty());
    EXPECT_EQ(m_controller.getInterfaceType("Eth 1"), gige);
    EXPECT_EQ(m_controller.getInterfaceSpeed("Eth 1"), 1'000'000'000U);
}

TEST_F(SystemControllerTest, checksTheLinksOfItsCameras) {
    add(gige, "Eth 1");
    add(usb, "USB");
    m_features->put("DeviceLinkSpeed", std::int64_t{250'000'000});
    m_features->putLimit(1, 1, 40'000'000);
    m_features->put("DeviceLocation", std::string("0x1/2"), "Local Device");
    enumerate();
    EXPECT_THAT(m_log.lines(),
                ElementsAre(subnetLine,
                            "Warning:Host Interface Link Speed (1000Mbps) is less than Camera Link "
                            "Speed (2000Mbps). Please check your network topology.",
                            "Warning:Port 2: " + cameraText +
                                ": Camera Speed Limit: 320 Mbps ( USB 2.0 or lower )"));
}

TEST_F(SystemControllerTest, unknownSpeedIsLoggedAndZero) {
    // For an interface of GigE Vision the enumeration asks for the speed, too.
    const Case cases[] = {
        {DOES(interface, GetFeatureByName,
              [](const char*, auto& out) {
                  return answer(makeIntFeature(address), OrvErrorIO)(out);
              }),
         {noSpeed, noSpeed}},
        {[](CameraParts& p) {
             ON_CALL(*p.interface->addFeature(subnetFeature, makeIntFeature(address)),
                     GetValue(An<std::int64_t&>()))
                 .WillByDefault(answer(std::int64_t{address}, OrvErrorIO));
         },
         {noSpeed, noSpeed}},
        {DOES(interface, GetType, answer(gige, OrvErrorIO)), {noType}},
        {DOES(interface, GetType, answer(OrvTransportLayerTypeMixed)), {noSpeed}},
        {[](CameraParts& p) { p.interface->addFeature(subnetFeature, makeIntFeature(1)); },
         {"Debug:Interface Name: 'Eth 1', IP Address: '0.0.0.1'", noSpeed, noSpeed}},
    };
    for (const Case& testCase : cases) {
        m_log.clear();
        m_cameras.clear();
        testCase.arrange(add(gige, "Eth 1"));
        SystemController controller(m_system, m_gige, m_usb);
        EXPECT_EQ(controller.enumerate().size(), 1U);
        EXPECT_EQ(controller.getInterfaceSpeed("Eth 1"), 0U);
        EXPECT_EQ(m_log.lines(), testCase.lines);
    }
    m_log.clear();
    EXPECT_EQ(m_controller.getInterfaceType("Eth 1"), OrvTransportLayerTypeUnknown);
    EXPECT_THAT(m_log.lines(), ElementsAre(noType));
}

TEST_F(SystemControllerTest, usersMaximumComesFirst) {
    add(usb, "USB");
    EXPECT_CALL(*m_usb, GetSpeed("USB"))
        .WillOnce(Return(std::nullopt))
        .WillRepeatedly(Return(10'000'000'000));
    m_controller.setMaxBandwidth("USB", 123);
    enumerate();
    EXPECT_EQ(m_controller.getInterfaceSpeed("USB"), 123U);
    m_controller.setMaxBandwidth("USB", 0);
    m_log.clear();
    EXPECT_EQ(m_controller.getInterfaceSpeed("USB"), 0U);
    EXPECT_EQ(m_log.text(), "Warning:Interface speed not found for interface 'USB'\n");
    m_controller.setMaxBandwidth("USB", 123);
    m_controller.clearMaxBandwidths();
    EXPECT_EQ(m_controller.getInterfaceSpeed("USB"), 10'000'000'000U);
}

/// The first message shows how much of the interface's bandwidth is divided.
TEST_F(SystemControllerTest, dividesWhatTheMarginLeaves) {
    const auto adjust =
        add(gige, "Eth 1").stream->addFeature("GVSPAdjustPacketSize", makeCommandFeature());
    m_features->put("DeviceLinkThroughputLimit", std::int64_t{1});
    m_features->put("AcquisitionFrameRate", 100.0);
    m_features->put("ImageSize", std::int64_t{10'000});
    enumerate();
    EXPECT_CALL(*adjust, RunCommand).Times(1);
    m_controller.autoSetInterface("Eth 1", 0, true, 0.5, 0.25);
    EXPECT_TRUE(
        m_log.has("Info:" + cameraText + ": Bandwidth (with safety margin) needed: 1.250000 MB"));
    const std::string divided =
        "Info:shown: Interface bandwidth left after applying safety margin: ";
    const struct {
        std::uint64_t bitsPerSecond;
        double margin;
        const char* left;
    } cases[] = {
        {2'400'000'000, 0.3, "210.000000"},
        {0, 0.1, "112.500000"}, // no maximum: the speed of the host
        {15, 0.4, "0.000000"},  // 1 byte/s, less 0.4
        {8'000'000, 1.5, "-0.500000"},
        {std::numeric_limits<std::uint64_t>::max(), 0.0, "2305843009213.693848"},
    };
    for (const auto& [bitsPerSecond, margin, left] : cases) {
        m_log.clear();
        m_controller.setMaxBandwidth("Eth 1", bitsPerSecond);
        for (const int index : {-1, 0, 1})
            m_controller.autoSetInterface("shown", index, false, margin, 0.07);
        EXPECT_EQ(m_log.lines().at(0), divided + left + " MB");
        EXPECT_EQ(m_log.count(m_log.lines().at(0)), 1) << "of the one interface that there is";
    }
}

TEST_F(SystemControllerTest, benchmarkRunsOnTheChosenCamerasOfOneInterface) {
    const CameraParts* chosen[] = {&add(gige, "Eth 1", "A"), &add(gige, "Eth 1", "B")};
    const CameraParts* others[] = {&add(gige, "Eth 1", "C"), &add(usb, "USB", "D")};
    m_controller.enumerate()[0][2]->setOpened(false);
    for (const CameraParts* parts : others)
        EXPECT_CALL(*parts->camera, StartContinuousImageAcquisition).Times(0);
    const testing::InSequence sequence;
    for (const bool adjustPacketSize : {false, true}) {
        for (const CameraParts* parts : chosen) {
            const auto adjust = makeCommandFeature();
            parts->stream->addFeature("GVSPAdjustPacketSize", adjust);
            EXPECT_CALL(*adjust, RunCommand).Times(adjustPacketSize ? 1 : 0);
        }
        for (const CameraParts* parts : chosen)
            EXPECT_CALL(*parts->camera, StartContinuousImageAcquisition);
        for (const CameraParts* parts : chosen)
            EXPECT_CALL(*parts->camera, StopContinuousImageAcquisition());
        for (const int index : {-1, 0, 2})
            m_controller.startBenchmark(index, adjustPacketSize);
        for (const int index : {-1, 0, 2})
            m_controller.stopBenchmark(index);
    }
}

TEST_F(SystemControllerTest, whatABenchmarkStartedIsStopped) {
    add(gige, "Eth 1");
    const auto camera = m_controller.enumerate()[0][0];
    m_controller.startBenchmark(0, false);
    camera->setOpened(false);
    m_controller.stopBenchmark(0);
    m_controller.stopBenchmark(0);
    EXPECT_EQ(m_log.count("Info:" + cameraText + ": Acquisition stopped successfully."), 1);
}

} // namespace
