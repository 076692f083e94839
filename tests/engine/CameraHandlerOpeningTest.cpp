// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/CameraFixture.h"

namespace {

using namespace testing;

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

const std::string io = ioErrorText + '\n';

#define FAILS(part, Operation) DOES(part, Operation, ioError())

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
     warningLine + ": Unable to get Streams" + io + errorLine + ": Cannot get streams." + io},
    {"NoStream", gige, DOES(camera, GetStreams, answer(MockCamera::Streams())),
     errorLine + ": Cannot get streams. (No error)\n"},
    {"SocketDriver", gige, useSocketDriver, warningLine + " is using Socket driver.\n",
     socketWarning},
    {"SocketDriverOfUsbIsNotAsked", usb, useSocketDriver, ""},
    {"NoDriverFeature", gige, [](CameraParts& p) { p.stream->removeFeature("GVSPDriver"); },
     warningLine +
         ": Cannot get feature 'GVSPDriver' (The designated instance (camera, feature etc.) "
         "cannot be found)\n"},
    {"DriverUnreadable", gige,
     [](CameraParts& p) { p.stream->addFeature("GVSPDriver", makeFeature(OrvFeatureDataString)); },
     warningLine +
         ": Cannot get value of 'GVSPDriver' (The feature type for this access function was "
         "wrong)\n"},
    {"InterfaceName", gige, FAILS(interface, GetName),
     warningLine + ": Cannot get interface name." + io},
    {"InterfaceId", gige, FAILS(interface, GetID), warningLine + ": Cannot get interface ID." + io},
    {"TransportLayerTexts", gige,
     [](CameraParts& p) {
         ON_CALL(*p.layer, GetName).WillByDefault(ioError());
         ON_CALL(*p.layer, GetID).WillByDefault(ioError());
         ON_CALL(*p.layer, GetPath).WillByDefault(ioError());
         ON_CALL(*p.layer, GetVendor).WillByDefault(ioError());
         ON_CALL(*p.layer, GetType).WillByDefault(ioError());
     },
     debugLine + ": Cannot get transport layer name." + io + debugLine +
         ": Cannot get transport layer ID." + io + debugLine +
         ": Cannot get transport layer path." + io + warningLine +
         ": Cannot get transport layer vendor." + io + warningLine +
         ": Cannot get transport layer type." + io},
    {"Interface", gige, FAILS(camera, GetInterface(_)),
     warningLine + ": Cannot get interface ptr." + io},
    {"InterfaceBeforeTransportLayer", gige,
     [](CameraParts& p) {
         ON_CALL(*p.camera, GetTransportLayer(_)).WillByDefault(ioError());
         ON_CALL(*p.interface, GetName).WillByDefault(ioError());
     },
     warningLine + ": Cannot get interface name." + io + warningLine +
         ": Cannot get transport layer ptr. for camera." + io},
    {"UsbInterfaceAfterItsPort", usb, FAILS(interface, GetName),
     "Warning:Port 3: " + cameraText + ": Cannot get interface name." + io},
    {"InUseElsewhere", usb, denyAccess,
     warningLine + ": Cannot open the camera, full access denied.\n" + warningLine +
         ": Cannot find USB port path.\n",
     accessWarning, false},
    {"NoStreamsOfUnopenedCamera", gige, denyAccess,
     warningLine + ": Cannot open the camera, full access denied.\n", accessWarning, false},
    {"OpenThoughPermitted", gige, FAILS(camera, Open),
     warningLine + ": Cannot open the camera." + io, cannotBeOpened, false},
    {"OpenWithUnknownAccess", gige,
     [](CameraParts& p) {
         denyAccess(p);
         ON_CALL(*p.camera, GetPermittedAccess).WillByDefault(ioError());
     },
     warningLine +
         ": Cannot open the camera. (Operation is invalid with the current access mode)\n",
     cannotBeOpened, false},
};

TEST(CameraHandlerOpening, logsWhatFailed) {
    for (const OpeningCase& opening : openings) {
        SCOPED_TRACE(opening.name);
        CapturedLog log;
        CameraParts parts(opening.type);
        parts.localDevice->addFeature("DeviceLocation", makeStringFeature("0x2/3/1"));
        opening.arrange(parts);
        const CameraHandler handler(parts.camera);
        EXPECT_EQ(log.text(), opening.log);
        EXPECT_EQ(handler.getWarningText(), opening.warningText);
        EXPECT_EQ(handler.isOpened(), opening.opened);
    }
}

TEST(CameraHandlerOpening, recordsWhatIsShown) {
    const CapturedLog log;
    EXPECT_THAT(CameraHandler(CameraParts(gige).camera).getCameraInfo(),
                FieldsAre("Camera", "Model", "DEV_1", "0001", "Eth 1", "IF_1", "MRD Layer", "TL_1",
                          "/layer.cti", "Meridane Technologies", "", gige));
}

TEST(CameraHandlerOpening, readsPortAndBusOfUsbCameras) {
    struct Case {
        NiceFeature location;
        const char* port;
        const char* bus;
        /// Empty when it cannot be read; it replaces the bus.
        const char* interfaceName = "";
    };
    const auto at = makeStringFeature;
    for (const Case& testCase : {Case{at("0x2/3/1"), "Port 3", "USB bus 2"},
                                 {at("::12/4"), "Port 4", "USB bus 12"},
                                 {at("0x2"), "", "USB bus 2"},
                                 {at("0x2/"), "", "USB bus 2"},
                                 {at("0x/3"), "Port 3", ""},
                                 {at("0x"), "", ""},
                                 {at(""), "", ""},
                                 {makeIntFeature(23), "", ""},
                                 {at("0x2/3"), "Port 3", "PCI 0-20-0", "PCI 0-20-0"}}) {
        SCOPED_TRACE(testCase.port);
        CapturedLog log;
        CameraParts parts(usb, testCase.interfaceName);
        parts.localDevice->addFeature("DeviceLocation", testCase.location);
        if (*testCase.interfaceName == '\0')
            ON_CALL(*parts.interface, GetName).WillByDefault(ioError());
        const CameraHandler handler(parts.camera);
        const CameraInfo info = handler.getCameraInfo();
        EXPECT_EQ(info.portPath, testCase.port);
        EXPECT_EQ(handler.getFeatureController()->messagePrefix(), cameraDisplayText(info));
        EXPECT_EQ(info.interfaceName, testCase.bus);
        EXPECT_EQ(log.count(warningLine + ": Cannot find USB port path."),
                  info.portPath.empty() ? 1 : 0);
    }
}

TEST(CameraHandlerOpening, makesAControllerAfterItUnlessItIsHandedOne) {
    const CapturedLog log;
    const CameraParts parts(gige);
    {
        const InSequence sequence;
        EXPECT_CALL(*parts.camera, Open(OrvAccessModeFull));
        EXPECT_CALL(*parts.camera, GetLocalDevice());
        EXPECT_CALL(*parts.camera, Open(OrvAccessModeFull));
    }
    EXPECT_NE(CameraHandler(parts.camera).getFeatureController(), nullptr);
    const auto features = std::make_shared<FakeFeatureController>();
    EXPECT_EQ(CameraHandler(parts.camera, features).getFeatureController(), features);
}

TEST(CameraHandlerClosing, stopsThenClosesWhatItStartedAndOpened) {
    const CapturedLog log;
    const CameraParts parts(gige);
    CameraHandler handler(parts.camera);
    handler.startAcquisition();
    handler.setOpened(false);
    const InSequence sequence;
    EXPECT_CALL(*parts.camera, StopContinuousImageAcquisition());
    EXPECT_CALL(*parts.camera, Close());
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
