// SPDX-License-Identifier: BSD-3-Clause
// How often real cameras would be asked, each time at the price of about a millisecond.
#include "engine/InterfaceHandlerGigE.h"
#include "engine/InterfaceHandlerUSB.h"
#include "engine/SystemController.h"
#include "tests/engine/CameraFixture.h"
#include "tests/support/FakeHostNetwork.h"
#include "tests/support/FakeHostUsbTree.h"

#include <algorithm>

namespace {

using testing::_;
using testing::An;
using testing::AtMost;
using testing::NiceMock;
using testing::StrEq;

constexpr std::int64_t maximum = 1'000'000;
constexpr std::int64_t payload = 1000;
constexpr double sensorRate = 100.0;

/// A mocked camera that sends \p overhead bytes for each byte of payload, and so reaches its
/// sensor's frame rate with that much more bandwidth only.
struct CountedCamera : CameraParts {
    explicit CountedCamera(OrvTransportLayerType type, double overhead = 1.0) : CameraParts(type) {
        ON_CALL(*bandwidth, SetValue(An<std::int64_t>()))
            .WillByDefault([this](std::int64_t bytesPerSecond) {
                ++writes;
                limit = bytesPerSecond;
                return OrvErrorType{OrvErrorSuccess};
            });
        ON_CALL(*frameRate, GetValue(An<double&>())).WillByDefault([=](double& rate) {
            ++rates;
            rate = std::min(sensorRate, static_cast<double>(limit) / payload / overhead);
            return OrvErrorType{OrvErrorSuccess};
        });
    }

    std::int64_t limit = maximum / 3;
    int writes = 0;
    int rates = 0;
    NiceFeature bandwidth =
        camera->addFeature("DeviceLinkThroughputLimit", makeIntFeature(limit, 10, maximum));
    NiceFeature frameRate = camera->addFeature("AcquisitionFrameRate", makeFloatFeature(0.0));
    NiceFeature imageSize = camera->addFeature("ImageSize", makeIntFeature(payload));
};

struct Iterations {
    double overhead;
    int count;
};

class AutoSetCalls : public testing::TestWithParam<Iterations> {};

TEST_P(AutoSetCalls, AreAWriteAndAFrameRateForEachIteration) {
    const CapturedLog log;
    CountedCamera counted(OrvTransportLayerTypeGEV, GetParam().overhead);
    CameraHandler handler(counted.camera);
    EXPECT_CALL(*counted.camera, GetFeatureByName(_, _)).Times(testing::AnyNumber());
    EXPECT_CALL(*counted.camera, GetFeatureByName(StrEq("AcquisitionFrameRateLimit"), _)).Times(3);
    EXPECT_CALL(*counted.bandwidth, GetValue(An<std::int64_t&>()));
    EXPECT_CALL(*counted.bandwidth, GetRange(An<std::int64_t&>(), _));
    EXPECT_CALL(*counted.bandwidth, IsWritable);
    EXPECT_CALL(*counted.frameRate, GetDataType);
    EXPECT_CALL(*counted.imageSize, GetValue(An<std::int64_t&>()));
    handler.autoSet(0.05);
    EXPECT_TRUE(
        log.has("Debug:Autoset completed in " + std::to_string(GetParam().count) + " steps."));
    // The maximum and the calculated bandwidth; before, at the maximum (told, then used), and at
    // the calculated bandwidth.
    EXPECT_EQ(counted.writes, 2 + GetParam().count);
    EXPECT_EQ(counted.rates, 4 + GetParam().count);
}

INSTANTIATE_TEST_SUITE_P(, AutoSetCalls,
                         testing::Values(Iterations{1.0, 10}, Iterations{1.3, 6},
                                         Iterations{8.0, 7}),
                         [](const auto& suite) { return std::to_string(suite.param.count); });

/// What is fixed while a camera is open may be read once, whatever is done with the camera.
void limitDescription(MockFeature& feature) {
    EXPECT_CALL(feature, GetName).Times(AtMost(1));
    EXPECT_CALL(feature, GetCategory).Times(AtMost(1));
    EXPECT_CALL(feature, GetDisplayName).Times(AtMost(1));
    EXPECT_CALL(feature, GetDescription).Times(AtMost(1));
    EXPECT_CALL(feature, GetRepresentation).Times(AtMost(1));
    EXPECT_CALL(feature, GetToolTip).Times(AtMost(1));
    EXPECT_CALL(feature, GetUnit).Times(AtMost(1));
    EXPECT_CALL(feature, GetVisibility).Times(AtMost(1));
    EXPECT_CALL(feature, GetDataType).Times(AtMost(1));
    EXPECT_CALL(feature, GetValues(An<std::vector<std::string>&>())).Times(AtMost(1));
}

class DescriptionCalls : public testing::TestWithParam<OrvTransportLayerType> {
protected:
    DescriptionCalls() {
        const auto describe = [](auto& module, const char* name, NiceFeature feature) {
            limitDescription(*module.addFeature(name, std::move(feature)));
        };
        MockCamera& camera = *m_counted.camera;
        describe(camera, "AcquisitionFrameRateEnable", makeBoolFeature(true));
        describe(camera, "DeviceLinkSpeed", makeIntFeature(maximum));
        describe(camera, "PixelSize", makeEnumFeature("Bpp8", {"Bpp8", "Bpp16"}));
        describe(camera, "Width", makeIntFeature(40));
        describe(camera, "Height", makeIntFeature(25));
        describe(camera, "TriggerMode", makeEnumFeature("On", {"Off", "On"}));
        describe(camera, "TriggerSource", makeEnumFeature("Freerun", {"Freerun", "Line0"}));
        describe(camera, "ExposureMode", makeEnumFeature("Timed", {"Timed"}));
        describe(*m_counted.localDevice, "DeviceLocation", makeStringFeature("U:1/2"));
        describe(*m_counted.stream, "GVSPProtocol", makeEnumFeature("UDP", {"UDP", "TCP"}));
        describe(*m_counted.stream, "GVSPAdjustPacketSize", makeCommandFeature());
        describe(*m_counted.stream, "GVSPPacketSize", makeIntFeature(9000));
        describe(*m_counted.interface, "GevInterfaceSubnetIPAddress", makeIntFeature(1));
        limitDescription(*m_counted.bandwidth);
        limitDescription(*m_counted.frameRate);
        ON_CALL(*m_system, GetCameras)
            .WillByDefault(
                answer(std::vector<std::shared_ptr<OrvCameraWrapper>>{m_counted.camera}));
        ON_CALL(*m_system, CreateCameraHandler).WillByDefault([](const auto& found) {
            return std::make_shared<CameraHandler>(found);
        });
    }

    CapturedLog m_log;
    CountedCamera m_counted{GetParam()};
    std::shared_ptr<NiceMock<MockSystem>> m_system = std::make_shared<NiceMock<MockSystem>>();
    SystemController m_controller{
        m_system, std::make_shared<InterfaceHandlerGigE>(std::make_shared<FakeHostNetwork>()),
        std::make_shared<InterfaceHandlerUSB>(std::make_shared<FakeHostUsbTree>())};
};

TEST_P(DescriptionCalls, AreNotRepeated) {
    // Read indeed, so that the limits are put to the test.
    EXPECT_CALL(*m_counted.bandwidth, GetDisplayName);
    const auto interfaces = m_controller.enumerate();
    ASSERT_EQ(interfaces.size(), 1U);
    const auto& camera = interfaces.front().front();
    camera->autoSet(0.05);
    const std::string id = camera->getCameraInfo().interfaceName;
    m_controller.setMaxBandwidth(id, 8 * maximum);
    for (const bool locked : {false, true}) {
        camera->setLocked(locked);
        m_controller.autoSetInterface(id, 0, true, 0.1, 0.05);
        EXPECT_EQ(camera->getAutosetStatus(), AutosetStatus::RequestedReached);
    }
}

INSTANTIATE_TEST_SUITE_P(, DescriptionCalls,
                         testing::Values(OrvTransportLayerTypeGEV, OrvTransportLayerTypeU3V),
                         [](const auto& suite) {
                             return suite.param == OrvTransportLayerTypeGEV ? "GigE" : "USB";
                         });

} // namespace
