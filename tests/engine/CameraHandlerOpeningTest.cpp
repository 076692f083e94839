// SPDX-License-Identifier: BSD-3-Clause
#include "tests/engine/CameraFixture.h"

namespace {

using testing::_;
using testing::InSequence;
using testing::Mock;
using testing::Return;

constexpr auto gige = OrvTransportLayerTypeGEV;
constexpr auto usb = OrvTransportLayerTypeU3V;
const std::string socketWarning = "Socket driver in use, please use Filter Driver.";
const std::string accessWarning =
    "Camera cannot be opened in FULL ACCESS mode, maybe it has already been opened by another "
    "application.";

const std::string cannotBeOpened = "Camera cannot be opened";

void useSocketDriver(CameraParts& parts) {
    parts.stream->addFeature("GVSPDriver", makeStringFeature("Socket"));
}

void denyAccess(CameraParts& parts) {
    MockCamera& camera = *parts.camera;
    ON_CALL(camera, Open).WillByDefault(Return(OrvErrorType{OrvErrorInvalidAccess}));
    ON_CALL(camera, GetPermittedAccess).WillByDefault(answer(OrvAccessModeRead));
    // What is open elsewhere shows neither local device nor streams.
    ON_CALL(camera, GetLocalDevice()).WillByDefault([] {
        return std::pair(std::shared_ptr<OrvLocalDeviceWrapper>(), OrvErrorType{OrvErrorIO});
    });
    ON_CALL(camera, GetStreams).WillByDefault(ioError());
}

struct OpeningCase {
    const char* name;
    OrvTransportLayerType type;
    void (*arrange)(CameraParts&);
    std::string log;
    std::string warningText = {};
    bool opened = true;
};

std::ostream& operator<<(std::ostream& stream, const OpeningCase& testCase) {
    return stream << testCase.name;
}

class Opening : public testing::TestWithParam<OpeningCase> {};

TEST_P(Opening, logsWhatFailed) {
    CapturedLog log;
    CameraParts parts(GetParam().type);
    parts.localDevice->addFeature("DeviceLocation", makeStringFeature("0x2/3/1"));
    GetParam().arrange(parts);
    const CameraHandler handler(parts.camera);
    EXPECT_EQ(log.text(), GetParam().log);
    EXPECT_EQ(handler.getWarningText(), GetParam().warningText);
    EXPECT_EQ(handler.isOpened(), GetParam().opened);
}

const std::string io = ioErrorText + '\n';
const std::string warning = "Warning:" + cameraText;
const std::string debug = "Debug:" + cameraText;
const std::string error = "Error:" + cameraText;

/// The cases differ in the operation, not in its signature: a macro names each only once.
#define FAILS(part, Operation)                                                                     \
    [](CameraParts& parts) {                                                                       \
        ON_CALL(*parts.part, Operation).WillByDefault(ioError());                                  \
    }

const OpeningCase openings[] = {
    {"Nothing", gige, [](CameraParts&) {}, ""},
    {"Name", gige, FAILS(camera, GetName), "Warning:Cannot get camera name" + io},
    {"ModelWhileNothingButTheNameIsKnown", gige, FAILS(camera, GetModel),
     "Warning:Camera: Cannot get model name." + io},
    {"IdBlamesTheSerialNumberToo", gige, FAILS(camera, GetID),
     "Warning:Model- (): Cannot get camera ID." + io +
         "Warning:Model-0001 (): Cannot get serial number." + io},
    {"SerialNumberIsNotExamined", gige, FAILS(camera, GetSerialNumber), ""},
    {"Streams", gige, FAILS(camera, GetStreams),
     warning + ": Unable to get Streams" + io + error + ": Cannot get streams." + io},
    {"NoStream", gige,
     [](CameraParts& p) {
         ON_CALL(*p.camera, GetStreams).WillByDefault(answer(MockCamera::Streams()));
     },
     error + ": Cannot get streams. (No error)\n"},
    {"SocketDriver", gige, useSocketDriver, warning + " is using Socket driver.\n", socketWarning},
    {"SocketDriverOfUsbIsNotAsked", usb, useSocketDriver, ""},
    {"NoDriverFeature", gige, [](CameraParts& p) { p.stream->removeFeature("GVSPDriver"); },
     warning + ": Cannot get feature 'GVSPDriver' (The designated instance (camera, feature etc.) "
               "cannot be found)\n"},
    {"DriverUnreadable", gige,
     [](CameraParts& p) { p.stream->addFeature("GVSPDriver", makeFeature(OrvFeatureDataString)); },
     warning + ": Cannot get value of 'GVSPDriver' (The feature type for this access function was "
               "wrong)\n"},
    {"InterfaceTexts", gige,
     [](CameraParts& p) {
         ON_CALL(*p.interface, GetName).WillByDefault(ioError());
         ON_CALL(*p.interface, GetID).WillByDefault(ioError());
     },
     warning + ": Cannot get interface name." + io + warning + ": Cannot get interface ID." + io},
    {"TransportLayerTexts", gige,
     [](CameraParts& p) {
         ON_CALL(*p.layer, GetName).WillByDefault(ioError());
         ON_CALL(*p.layer, GetID).WillByDefault(ioError());
         ON_CALL(*p.layer, GetPath).WillByDefault(ioError());
         ON_CALL(*p.layer, GetVendor).WillByDefault(ioError());
         ON_CALL(*p.layer, GetType).WillByDefault(ioError());
     },
     debug + ": Cannot get transport layer name." + io + debug +
         ": Cannot get transport layer ID." + io + debug + ": Cannot get transport layer path." +
         io + warning + ": Cannot get transport layer vendor." + io + warning +
         ": Cannot get transport layer type." + io},
    {"Interface", gige, FAILS(camera, GetInterface(_)),
     warning + ": Cannot get interface ptr." + io},
    {"InterfaceBeforeTransportLayer", gige,
     [](CameraParts& p) {
         ON_CALL(*p.camera, GetTransportLayer(_)).WillByDefault(ioError());
         ON_CALL(*p.interface, GetName).WillByDefault(ioError());
     },
     warning + ": Cannot get interface name." + io + warning +
         ": Cannot get transport layer ptr. for camera." + io},
    {"UsbInterfaceAfterItsPort", usb, FAILS(interface, GetName),
     "Warning:Port 3: " + cameraText + ": Cannot get interface name." + io},
    {"InUseElsewhere", usb, denyAccess,
     warning + ": Cannot open the camera, full access denied.\n" + warning +
         ": Cannot find USB port path.\n",
     accessWarning, false},
    {"NoStreamsOfUnopenedCamera", gige, denyAccess,
     warning + ": Cannot open the camera, full access denied.\n", accessWarning, false},
    {"OpenThoughPermitted", gige, FAILS(camera, Open), warning + ": Cannot open the camera." + io,
     cannotBeOpened, false},
    {"OpenWithUnknownAccess", gige,
     [](CameraParts& p) {
         denyAccess(p);
         ON_CALL(*p.camera, GetPermittedAccess).WillByDefault(ioError());
     },
     warning + ": Cannot open the camera. (Operation is invalid with the current access mode)\n",
     cannotBeOpened, false},
};

#undef FAILS

INSTANTIATE_TEST_SUITE_P(, Opening, testing::ValuesIn(openings),
                         [](const auto& suite) { return suite.param.name; });

TEST(CameraHandlerOpening, recordsWhatIsShown) {
    CapturedLog log;
    const CameraParts parts(gige);
    const CameraInfo info = CameraHandler(parts.camera).getCameraInfo();
    EXPECT_EQ(info.cameraName, "Camera");
    EXPECT_EQ(info.modelName, "Model");
    EXPECT_EQ(info.cameraId, "DEV_1");
    EXPECT_EQ(info.serialNumber, "0001");
    EXPECT_EQ(info.interfaceName, "Eth 1");
    EXPECT_EQ(info.interfaceId, "IF_1");
    EXPECT_EQ(info.transportLayerName, "MRD Layer");
    EXPECT_EQ(info.transportLayerId, "TL_1");
    EXPECT_EQ(info.transportLayerPath, "/layer.cti");
    EXPECT_EQ(info.transportLayerVendor, "Meridane Technologies");
    EXPECT_EQ(info.portPath, "");
    EXPECT_EQ(info.transportLayerType, gige);
}

TEST(CameraHandlerOpening, readsPortAndBusOfUsbCameras) {
    struct Case {
        const char* location;
        const char* port;
        const char* bus;
    };
    for (const Case& testCase : {Case{"0x2/3/1", "Port 3", "USB bus 2"},
                                 {"::12/4", "Port 4", "USB bus 12"},
                                 {"0x2", "", "USB bus 2"},
                                 {"0x2/", "", "USB bus 2"},
                                 {"0x/3", "Port 3", ""},
                                 {"0x", "", ""},
                                 {"", "", ""}}) {
        SCOPED_TRACE(testCase.location);
        CapturedLog log;
        CameraParts parts(usb, "");
        parts.localDevice->addFeature("DeviceLocation", makeStringFeature(testCase.location));
        ON_CALL(*parts.interface, GetName).WillByDefault(ioError());
        const CameraHandler handler(parts.camera);
        const CameraInfo info = handler.getCameraInfo();
        EXPECT_EQ(info.portPath, testCase.port);
        EXPECT_EQ(handler.getFeatureController()->messagePrefix(), cameraDisplayText(info));
        EXPECT_EQ(info.interfaceName, testCase.bus);
        EXPECT_EQ(log.count(warning + ": Cannot find USB port path."),
                  info.portPath.empty() ? 1 : 0);
    }
}

TEST(CameraHandlerOpening, locationOfAnotherTypeCountsAsAbsent) {
    CapturedLog log;
    CameraParts parts(usb, "PCI 0-20-0");
    parts.localDevice->addFeature("DeviceLocation", makeIntFeature(23));
    EXPECT_EQ(CameraHandler(parts.camera).getCameraInfo().portPath, "");
    EXPECT_TRUE(log.has(warning + ": Cannot find USB port path."));
    // The name of the interface replaces the bus.
    parts.localDevice->addFeature("DeviceLocation", makeStringFeature("0x2/3"));
    EXPECT_EQ(CameraHandler(parts.camera).getCameraInfo().interfaceName, "PCI 0-20-0");
}

TEST(CameraHandlerOpening, identifiesTheCameraBeforeOpeningIt) {
    CapturedLog log;
    const CameraParts parts(gige);
    {
        const InSequence sequence;
        EXPECT_CALL(*parts.camera, GetName);
        EXPECT_CALL(*parts.camera, GetModel);
        EXPECT_CALL(*parts.camera, GetID);
        EXPECT_CALL(*parts.camera, GetSerialNumber);
        EXPECT_CALL(*parts.camera, Open(OrvAccessModeFull));
        EXPECT_CALL(*parts.camera, GetLocalDevice());
    }
    const CameraHandler handler(parts.camera);
    EXPECT_NE(handler.getFeatureController(), nullptr);
}

TEST(CameraHandlerOpening, keepsTheControllerItIsHanded) {
    CapturedLog log;
    const CameraParts parts(gige);
    const auto features = std::make_shared<FakeFeatureController>();
    EXPECT_CALL(*parts.camera, GetLocalDevice()).Times(0);
    EXPECT_EQ(CameraHandler(parts.camera, features).getFeatureController(), features);
}

TEST(CameraHandlerClosing, stopsThenClosesWhatItStartedAndOpened) {
    CapturedLog log;
    const CameraParts parts(gige);
    auto handler = std::make_unique<CameraHandler>(parts.camera);
    handler->startAcquisition();
    handler->setOpened(false);
    const InSequence sequence;
    EXPECT_CALL(*parts.camera, StopContinuousImageAcquisition());
    EXPECT_CALL(*parts.camera, Close());
    handler.reset();
    Mock::VerifyAndClearExpectations(parts.camera.get());
}

TEST(CameraHandlerClosing, leavesAloneWhatItDidNotOpen) {
    CapturedLog log;
    CameraParts parts(gige);
    denyAccess(parts);
    EXPECT_CALL(*parts.camera, StopContinuousImageAcquisition()).Times(0);
    EXPECT_CALL(*parts.camera, Close()).Times(0);
    CameraHandler(parts.camera).setOpened(true);
}

} // namespace
