// SPDX-License-Identifier: BSD-3-Clause
#include "engine/SystemController.h"

#include "engine/InterfaceHandlerGigE.h"
#include "engine/InterfaceHandlerUSB.h"
#include "tests/engine/CameraFixture.h"
#include "tests/support/FakeHostNetwork.h"
#include "tests/support/FakeHostUsbTree.h"

#include <functional>
#include <optional>

namespace {

using testing::_;
using testing::An;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::NiceMock;
using testing::Return;

constexpr auto gige = OrvTransportLayerTypeGEV;
constexpr auto usb = OrvTransportLayerTypeU3V;
constexpr std::int64_t address = 0xC0A8010A;
constexpr auto subnetFeature = "GevInterfaceSubnetIPAddress";

/// An empty tree that counts how often it is looked at.
class CountingUsbTree : public FakeHostUsbTree {
public:
    std::vector<host::DeviceInterface> devices() override {
        ++looks;
        return {};
    }

    int looks = 0;
};

class MockGigE : public InterfaceHandlerGigE {
public:
    MockGigE() : InterfaceHandlerGigE({std::make_shared<FakeHostNetwork>()}) {}
    MOCK_METHOD(std::uint64_t, GetLinkSpeed, (std::uint64_t), (const, override));
};

class MockUsb : public InterfaceHandlerUSB {
public:
    explicit MockUsb(std::shared_ptr<CountingUsbTree> tree)
        : InterfaceHandlerUSB({std::move(tree)}) {}
    MOCK_METHOD(std::optional<std::uint64_t>, GetSpeed, (const std::string&), (const, override));
};

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
        ON_CALL(*m_gige, GetLinkSpeed).WillByDefault(Return(1'000'000'000));
        ON_CALL(*m_usb, GetSpeed).WillByDefault(Return(5'000'000'000));
        m_log.clear();
    }

    CameraParts& add(OrvTransportLayerType type, const std::string& interfaceName,
                     const std::string& id = "DEV_1") {
        MockIdentity identity;
        identity.id = id;
        m_cameras.push_back(std::make_unique<CameraParts>(type, interfaceName, identity));
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
    std::shared_ptr<CountingUsbTree> m_tree = std::make_shared<CountingUsbTree>();
    std::shared_ptr<NiceMock<MockSystem>> m_system = std::make_shared<NiceMock<MockSystem>>();
    std::shared_ptr<NiceMock<MockGigE>> m_gige = std::make_shared<NiceMock<MockGigE>>();
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

TEST_F(SystemControllerTest, enumeratesAnewButKeepsTypesAndAddresses) {
    const CameraParts& parts = add(gige, "Eth 1");
    EXPECT_THAT(enumerate(), ElementsAre("Eth 1: DEV_1"));
    // The speed of an adapter is known by the address that it had when the controller was made.
    parts.interface->addFeature(subnetFeature, makeIntFeature(0x0A000001));
    ON_CALL(*m_gige, GetLinkSpeed(0x0A000001)).WillByDefault(Return(0));
    EXPECT_THAT(enumerate(), ElementsAre("Eth 1: DEV_1"));
    EXPECT_EQ(m_controller.getInterfaceSpeed("Eth 1"), 1'000'000'000U);
    m_cameras.clear();
    EXPECT_THAT(enumerate(), IsEmpty());
    EXPECT_EQ(m_controller.getInterfaceType("Eth 1"), gige);
}

TEST_F(SystemControllerTest, failingCameraListIsEmpty) {
    const CameraParts& parts = add(gige, "Eth 1");
    enumerate();
    EXPECT_EQ(m_tree->looks, 1);
    const std::vector<std::shared_ptr<OrvCameraWrapper>> left{parts.camera};
    ON_CALL(*m_system, GetCameras).WillByDefault(answer(left, OrvErrorIO));
    EXPECT_CALL(*parts.camera, StartContinuousImageAcquisition).Times(0);
    EXPECT_THAT(enumerate(), IsEmpty());
    EXPECT_EQ(m_tree->looks, 2);
    m_controller.startBenchmark(0, false);
}

TEST_F(SystemControllerTest, asksTheOperatingSystemWhenItIsGivenNoHandlers) {
    add(gige, "Eth 1");
    add(usb, "USB");
    SystemController controller(m_system);
    EXPECT_EQ(controller.enumerate().size(), 2U);
    // Whatever this host has: both handlers can be asked.
    EXPECT_NO_FATAL_FAILURE(controller.getInterfaceSpeed("Eth 1"));
    EXPECT_NO_FATAL_FAILURE(controller.getInterfaceSpeed("USB"));
}

/// What is wrong with a camera, and what is logged of it.
struct Case {
    std::function<void(CameraParts&)> arrange;
    std::vector<std::string> lines;
};

TEST_F(SystemControllerTest, failingCamerasAreLoggedAndTheOthersStay) {
    const auto loseLayer = [](CameraParts& p) {
        ON_CALL(*p.camera, GetTransportLayer(_)).WillByDefault(ioError());
    };
    const std::string noLayer = "Warning:Could not get the TransportLayerPtr from camera: ";
    const Case cases[] = {
        {loseLayer, {noLayer + "'Camera'" + ioErrorText}},
        {[loseLayer](auto& p) {
             loseLayer(p);
             ON_CALL(*p.camera, GetName).WillByDefault(answer(std::string("?"), OrvErrorIO));
         },
         {"Warning:Could not get Camera Name" + ioErrorText, noLayer + "''" + ioErrorText}},
        {[](auto& p) { ON_CALL(*p.camera, GetInterface(_)).WillByDefault(ioError()); },
         {"Warning:Could not get the InterfacePtr from camera: 'Camera'" + ioErrorText}},
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

TEST_F(SystemControllerTest, otherTransportLayersAreLeftOut) {
    struct Layer {
        std::optional<std::string> vendor;
        std::optional<std::string> name;
        std::optional<std::int32_t> type;
        std::string line;
    };
    const std::string vendor = "Meridane Technologies";
    const std::string name = "MRD Layer";
    const Layer layers[] = {{{}, name, 1, "[MRD Layer] type=1"},
                            {vendor, {}, 1, "[MRD Layer] type=1"},
                            {vendor, name, {}, "[MRD Layer] type=1"},
                            {"Meridane", name, 1, "[MRD Layer] type=1"},
                            {vendor, "mrd Layer", 1, "[mrd Layer] type=1"},
                            {vendor, name, 11, "[MRD Layer] type=11"},
                            {vendor, name, -4, "[MRD Layer] type=-4"}};
    // Without a value: the right one, but the call fails.
    const auto give = [](const auto& value, const auto& right) {
        using Value = std::decay_t<decltype(right)>;
        return answer(static_cast<Value>(value.value_or(right)), value ? 0 : OrvErrorIO);
    };
    for (const Layer& layer : layers) {
        m_log.clear();
        m_cameras.clear();
        const CameraParts& parts = add(gige, "Eth 1", "BAD");
        ON_CALL(*parts.layer, GetVendor).WillByDefault(give(layer.vendor, vendor));
        ON_CALL(*parts.layer, GetName).WillByDefault(give(layer.name, name));
        ON_CALL(*parts.layer, GetType).WillByDefault(give(layer.type, gige));
        add(gige, "Eth 1", "GOOD");
        EXPECT_THAT(enumerate(), ElementsAre("Eth 1: GOOD"));
        EXPECT_THAT(m_log.lines(),
                    ElementsAre("Debug:TL not supported: " + layer.line, subnetLine));
    }
}

TEST_F(SystemControllerTest, firstCameraOfAnInterfaceDecides) {
    add(gige, "Eth 1");
    CameraParts& second = add(gige, "Eth 1");
    second.interface->addFeature(subnetFeature, makeIntFeature(0x0A000001));
    CameraParts& third = add(gige, "Eth 1");
    ON_CALL(*third.interface, GetType).WillByDefault(answer(usb));
    enumerate();
    EXPECT_EQ(m_controller.getInterfaceType("Eth 1"), gige);
    EXPECT_TRUE(m_log.has("Debug:Interface Name: 'Eth 1', IP Address: '10.0.0.1'"));
    EXPECT_CALL(*m_gige, GetLinkSpeed(address)).WillOnce(Return(42));
    EXPECT_EQ(m_controller.getInterfaceSpeed("Eth 1"), 42U);
}

TEST_F(SystemControllerTest, checksTheLinksOfItsCameras) {
    add(gige, "Eth 1");
    add(usb, "USB");
    m_features->put("DeviceLinkSpeed", std::int64_t{250'000'000});
    m_features->putRange("DeviceLinkThroughputLimit", std::int64_t{1}, std::int64_t{1},
                         std::int64_t{40'000'000});
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
        {[](auto& p) {
             ON_CALL(*p.interface, GetFeatureByName).WillByDefault([](const char*, auto& feature) {
                 return answer(makeIntFeature(address), OrvErrorIO)(feature);
             });
         },
         {noSpeed, noSpeed}},
        {[](auto& p) {
             ON_CALL(*p.interface->addFeature(subnetFeature, makeIntFeature(address)),
                     GetValue(An<std::int64_t&>()))
                 .WillByDefault(answer(address, OrvErrorIO));
         },
         {noSpeed, noSpeed}},
        {[](auto& p) { ON_CALL(*p.interface, GetType).WillByDefault(answer(gige, OrvErrorIO)); },
         {noType}},
        {[](auto& p) {
             ON_CALL(*p.interface, GetType).WillByDefault(answer(OrvTransportLayerTypeMixed));
         },
         {noSpeed}},
        {[this](auto&) { ON_CALL(*m_gige, GetLinkSpeed(address)).WillByDefault(Return(0)); },
         {subnetLine, noSpeed, noSpeed}},
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

TEST_F(SystemControllerTest, speedOfUsbIsAskedByInterface) {
    add(usb, "USB 0-20-0");
    m_features->put("StreamBytesPerSecond", std::int64_t{1});
    m_features->put("DeviceLocation", std::string("0x1/2"), "Local Device");
    enumerate();
    m_log.clear();
    EXPECT_CALL(*m_usb, GetSpeed("USB 0-20-0"))
        .WillOnce(Return(std::nullopt))
        .WillOnce(Return(10'000'000'000));
    EXPECT_EQ(m_controller.getInterfaceSpeed("USB 0-20-0"), 0U);
    EXPECT_THAT(m_log.lines(),
                ElementsAre("Warning:Interface speed not found for interface 'USB 0-20-0'"));
    EXPECT_EQ(m_controller.getInterfaceSpeed("USB 0-20-0"), 10'000'000'000U);
}

TEST_F(SystemControllerTest, usersMaximumComesFirst) {
    add(gige, "Eth 1");
    m_controller.setMaxBandwidth("Eth 1", 123);
    enumerate();
    EXPECT_EQ(m_controller.getInterfaceSpeed("Eth 1"), 123U);
    m_controller.setMaxBandwidth("Eth 1", 0);
    EXPECT_EQ(m_controller.getInterfaceSpeed("Eth 1"), 1'000'000'000U);
    m_controller.setMaxBandwidth("Eth 1", 123);
    m_controller.clearMaxBandwidths();
    EXPECT_EQ(m_controller.getInterfaceSpeed("Eth 1"), 1'000'000'000U);
}

TEST_F(SystemControllerTest, benchmarkRunsOnTheChosenCamerasOfOneInterface) {
    const CameraParts& chosen = add(gige, "Eth 1", "A");
    const CameraParts& left = add(gige, "Eth 1", "B");
    const CameraParts& other = add(usb, "USB", "C");
    const auto adjust = chosen.stream->addFeature("GVSPAdjustPacketSize", makeCommandFeature());
    const auto interfaces = m_controller.enumerate();
    interfaces[0][1]->setOpened(false);

    for (const CameraParts* parts : {&left, &other})
        EXPECT_CALL(*parts->camera, StartContinuousImageAcquisition).Times(0);
    {
        const testing::InSequence sequence;
        EXPECT_CALL(*chosen.camera, StartContinuousImageAcquisition);
        EXPECT_CALL(*chosen.camera, StopContinuousImageAcquisition());
        EXPECT_CALL(*adjust, RunCommand);
        EXPECT_CALL(*chosen.camera, StartContinuousImageAcquisition);
        EXPECT_CALL(*chosen.camera, StopContinuousImageAcquisition());
    }
    for (const bool adjustPacketSize : {false, true}) {
        m_controller.startBenchmark(0, adjustPacketSize);
        m_controller.stopBenchmark(0);
    }
    for (const int index : {-1, 2}) {
        m_controller.startBenchmark(index, true);
        m_controller.stopBenchmark(index);
    }
}

TEST_F(SystemControllerTest, packetSizesAreAdjustedBeforeAnyCameraStreams) {
    const CameraParts& first = add(gige, "Eth 1", "A");
    const CameraParts& second = add(gige, "Eth 1", "B");
    m_controller.enumerate();
    const testing::InSequence sequence;
    for (const CameraParts* parts : {&first, &second}) {
        const auto adjust = parts->stream->addFeature("GVSPAdjustPacketSize", makeCommandFeature());
        EXPECT_CALL(*adjust, RunCommand);
    }
    for (const CameraParts* parts : {&first, &second})
        EXPECT_CALL(*parts->camera, StartContinuousImageAcquisition);
    m_controller.startBenchmark(0, true);
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

TEST_F(SystemControllerTest, tellsTheVersionOfTheSdk) {
    EXPECT_CALL(*m_system, QueryVersion)
        .WillOnce(answer(OrvVersionInfo{1, 2, 30}))
        .WillOnce(answer(OrvVersionInfo{1, 2, 30}, OrvErrorIO));
    EXPECT_EQ(m_controller.getSdkVersion(), "1.2.30");
    EXPECT_EQ(m_controller.getSdkVersion(), "");
}

} // namespace
