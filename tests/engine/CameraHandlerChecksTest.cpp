// SPDX-License-Identifier: BSD-3-Clause
#include "tests/engine/CameraFixture.h"

#include <chrono>
#include <optional>
#include <tuple>

namespace {

TEST(CameraHandlerLinkSpeed, warnsOfASlowerHost) {
    struct Case {
        std::uint64_t host;
        FeatureValue camera;
        const char* warning;
    };
    const Case cases[] = {
        {1'000'000'000, std::int64_t{125'000'000}, ""},
        {1'000'000'000, std::int64_t{250'000'000},
         "Warning:Host Interface Link Speed (1000Mbps) is less than Camera Link Speed (2000Mbps). "
         "Please check your network topology.\n"},
        {999'999'999, std::int64_t{125'000'000},
         "Warning:Host Interface Link Speed (999Mbps) is less than Camera Link Speed (1000Mbps). "
         "Please check your network topology.\n"},
        {0, std::int64_t{-1}, ""},
        {0, std::string("fast"), ""},
        {0, 125e6, ""},
    };
    for (const Case& testCase : cases) {
        HandlerWithFakes fakes;
        fakes.features->put("DeviceLinkSpeed", testCase.camera);
        fakes.handler.checkLinkSpeed(testCase.host);
        EXPECT_EQ(fakes.log.text(), testCase.warning) << toText(testCase.camera);
    }
}

TEST(CameraHandlerLinkSpeed, isNotCheckedOfACameraThatIsNotOpen) {
    CapturedLog log;
    const CameraParts parts(OrvTransportLayerTypeU3V);
    ON_CALL(*parts.camera, Open).WillByDefault(ioError());
    const auto features = std::make_shared<FakeFeatureController>();
    features->put("DeviceLinkSpeed", std::int64_t{125'000'000});
    features->putLimit(1, 1, 1);
    CameraHandler handler(parts.camera, features);
    handler.setOpened(true);
    log.clear();
    handler.checkLinkSpeed(0);
    handler.checkUsbSpeedLimit();
    EXPECT_EQ(log.text(), "");
    handler.startAcquisition();
    EXPECT_EQ(handler.getWarningText(), "Camera cannot be opened");
}

TEST(CameraHandlerTrigger, followsModeSourceAndExposure) {
    using Text = std::optional<std::string>;
    struct Case {
        Text mode;
        Text source;
        Text exposure;
        bool triggered;
    };
    const Case cases[] = {
        {{}, {}, {}, false},
        {{}, {}, "Timed", false},
        {{}, {}, "TriggerWidth", true},
        {"Off", "Line1", {}, false},
        {"Off", "Line1", "Timed", false},
        {"Off", "Line1", "TriggerWidth", true},
        {"On", {}, {}, true},
        {"On", {}, "Timed", true},
        {"On", "Line1", "Timed", true},
        {"On", "Freerun", {}, false},
        {"On", "Freerun", "Timed", false},
        {"On", "Freerun", "TriggerWidth", true},
    };
    for (const Case& testCase : cases) {
        HandlerWithFakes fakes;
        const auto put = [&fakes](const char* feature, const Text& value) {
            if (value)
                fakes.features->put(feature, *value);
        };
        put("TriggerMode", testCase.mode);
        put("TriggerSource", testCase.source);
        put("ExposureMode", testCase.exposure);
        EXPECT_EQ(fakes.handler.isTriggered(), testCase.triggered)
            << testCase.mode.value_or("-") << ' ' << testCase.source.value_or("-") << ' '
            << testCase.exposure.value_or("-");
    }
}

TEST(CameraHandlerTrigger, valuesOfAnotherTypeAreNoTrigger) {
    HandlerWithFakes fakes;
    fakes.features->put("TriggerMode", true);
    fakes.features->put("ExposureMode", std::int64_t{1});
    EXPECT_FALSE(fakes.handler.isTriggered());
}

/// A handler of a GigE camera whose stream can negotiate its packet size.
struct PacketSizeFakes : HandlerWithFakes {
    explicit PacketSizeFakes(std::int64_t packetSize,
                             OrvTransportLayerType type = OrvTransportLayerTypeGEV)
        : HandlerWithFakes(type) {
        parts.stream->addFeature("GVSPAdjustPacketSize", command);
        parts.stream->addFeature("GVSPPacketSize", makeIntFeature(packetSize));
    }

    NiceFeature command = makeCommandFeature();
};

const std::string warning = "Warning:" + cameraText;

std::string newSize(int size) {
    return "Info:" + cameraText + ": Adjust packet size, new value: " + std::to_string(size) +
           " bytes.\n";
}

TEST(CameraHandlerPacketSize, warnsBelowJumboFrames) {
    const std::string jumbo =
        warning + ": The current packet size is below the recommended value. This affects the "
                  "streaming performance. Please ensure jumbo frames are activated.\n";
    for (const int size : {1500, 5999, 6000, 8228}) {
        PacketSizeFakes fakes(size);
        EXPECT_TRUE(fakes.handler.adjustPacketSize(true));
        EXPECT_EQ(fakes.log.text(), (size < 6000 ? jumbo : "") + newSize(size));
    }
}

TEST(CameraHandlerPacketSize, isNegotiatedOnce) {
    PacketSizeFakes fakes(8000);
    EXPECT_CALL(*fakes.command, RunCommand).Times(2).WillOnce(ioError());
    EXPECT_FALSE(fakes.handler.adjustPacketSize(false));
    EXPECT_FALSE(fakes.handler.adjustPacketSize(true));
    EXPECT_TRUE(fakes.handler.adjustPacketSize(true));
    EXPECT_FALSE(fakes.handler.adjustPacketSize(true));
}

TEST(CameraHandlerPacketSize, isLeftAloneWithoutGvspOverUdp) {
    const std::tuple<OrvTransportLayerType, const char*, bool> cases[] = {
        {OrvTransportLayerTypeGEV, "UDP", true},
        {OrvTransportLayerTypeGEV, "TCP", false},
        {OrvTransportLayerTypeU3V, "UDP", false}};
    for (const auto& [type, protocol, isAdjusted] : cases) {
        PacketSizeFakes fakes(8000, type);
        fakes.features->put("GVSPProtocol", std::string(protocol), "Stream0");
        EXPECT_CALL(*fakes.command, RunCommand).Times(isAdjusted ? 1 : 0);
        EXPECT_EQ(fakes.handler.adjustPacketSize(true), isAdjusted);
        EXPECT_EQ(fakes.log.text(), isAdjusted ? newSize(8000) : "");
    }
}

TEST(CameraHandlerPacketSize, pollsUntilTheCommandIsDone) {
    PacketSizeFakes fakes(8000);
    EXPECT_CALL(*fakes.command, IsCommandDone)
        .Times(3)
        .WillOnce(answer(false))
        .WillOnce(answer(false))
        .WillOnce(answer(true));
    EXPECT_TRUE(fakes.handler.adjustPacketSize(true));

    PacketSizeFakes failing(8000);
    EXPECT_CALL(*failing.command, IsCommandDone).WillOnce(answer(false)).WillOnce(ioError());
    EXPECT_TRUE(failing.handler.adjustPacketSize(true));
    EXPECT_EQ(failing.log.text(), newSize(8000));
}

TEST(CameraHandlerPacketSize, logsWhatFailed) {
    const std::string missing =
        " (The designated instance (camera, feature etc.) cannot be found)\n";
    const std::pair<void (*)(PacketSizeFakes&), std::string> cases[] = {
        {[](auto& f) { f.parts.stream->removeFeature("GVSPAdjustPacketSize"); },
         warning + ": Cannot get feature 'GVSPAdjustPacketSize'" + missing},
        {[](auto& f) { ON_CALL(*f.command, RunCommand).WillByDefault(ioError()); },
         warning + ": Error while executing GVSPAdjustPacketSize" + ioErrorText + '\n'},
        {[](auto& f) { f.parts.stream->removeFeature("GVSPPacketSize"); },
         warning + ": Cannot get feature 'GVSPPacketSize'" + missing},
        {[](auto& f) { f.parts.stream->addFeature("GVSPPacketSize", makeStringFeature("large")); },
         warning + ": Cannot get value of 'GVSPPacketSize' (The feature type for this access "
                   "function was wrong)\n"},
        {[](auto& f) { ON_CALL(*f.parts.camera, GetStreams).WillByDefault(ioError()); },
         "Error:" + cameraText + ": GigEAdjustPacketSize: invalid stream pointer.\n"},
    };
    for (const auto& [arrange, text] : cases) {
        PacketSizeFakes fakes(8000);
        arrange(fakes);
        CameraHandler handler(fakes.parts.camera, fakes.features);
        fakes.log.clear();
        EXPECT_FALSE(handler.adjustPacketSize(true));
        EXPECT_EQ(fakes.log.text(), text);
    }
}

TEST(CameraHandlerPacketSize, waitsFiveSecondsAtMostAndOnlyOnceForACommandThatNeverCompletes) {
    using namespace std::chrono_literals;
    PacketSizeFakes fakes(8000);
    const auto passed = [start = std::chrono::steady_clock::now()] {
        return std::chrono::steady_clock::now() - start;
    };
    // Done in the end: without a limit, the test fails instead of waiting for ever.
    ON_CALL(*fakes.command, IsCommandDone).WillByDefault([&](bool& done) {
        done = passed() > 15s;
        return OrvErrorType{OrvErrorSuccess};
    });
    EXPECT_CALL(*fakes.command, RunCommand).Times(1);
    EXPECT_FALSE(fakes.handler.adjustPacketSize(true));
    EXPECT_FALSE(fakes.handler.adjustPacketSize(true));
    EXPECT_GE(passed(), 5s);
    EXPECT_LT(passed(), 9s);
    EXPECT_EQ(fakes.log.text(), warning + ": Error while executing GVSPAdjustPacketSize "
                                          "(Timeout during wait)\n");
}

} // namespace
