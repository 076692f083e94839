// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/CameraFixture.h"

#include <chrono>
#include <tuple>

namespace {

TEST(CameraHandlerLinkSpeed, warnsOfASlowerHost) {
    const auto warning = [](const std::string& host, const std::string& camera) {
        return "Warning:Host Interface Link Speed (" + host +
               "Mbps) is less than Camera Link Speed (" + camera +
               "Mbps). Please check your network topology.\n";
    };
    const std::tuple<std::uint64_t, FeatureValue, std::string> cases[] = {
        {1'000'000'000, std::int64_t{125'000'000}, ""},
        {1'000'000'000, std::int64_t{250'000'000}, warning("1000", "2000")},
        {999'999'999, std::int64_t{125'000'000}, warning("999", "1000")},
        {0, std::int64_t{-1}, ""},
        {0, std::string("fast"), ""},
        {0, 125e6, ""},
    };
    for (const auto& [host, camera, text] : cases) {
        HandlerWithFakes fakes;
        fakes.features->put("DeviceLinkSpeed", camera);
        fakes.handler.checkLinkSpeed(host);
        EXPECT_EQ(fakes.log.text(), text) << toText(camera);
    }
}

TEST(CameraHandlerLinkSpeed, isNotCheckedOfACameraThatIsNotOpen) {
    HandlerWithFakes fakes(OrvTransportLayerTypeU3V);
    fakes.features->put("DeviceLinkSpeed", std::int64_t{125'000'000});
    fakes.features->putLimit(1, 1, 1);
    ON_CALL(*fakes.parts.camera, Open).WillByDefault(ioError());
    CameraHandler handler(fakes.parts.camera, fakes.features);
    handler.setOpened(true);
    fakes.log.clear();
    handler.checkLinkSpeed(0);
    handler.checkUsbSpeedLimit();
    EXPECT_EQ(fakes.log.text(), "");
    handler.startAcquisition();
    EXPECT_EQ(handler.getWarningText(), "Camera cannot be opened");
}

TEST(CameraHandlerTrigger, followsModeSourceAndExposure) {
    const char* const none = "";
    const std::tuple<const char*, const char*, const char*, bool> cases[] = {
        {none, none, none, false},          {none, none, "Timed", false},
        {none, none, "TriggerWidth", true}, {"Off", "Line1", none, false},
        {"Off", "Line1", "Timed", false},   {"Off", "Line1", "TriggerWidth", true},
        {"On", none, none, true},           {"On", none, "Timed", true},
        {"On", "Line1", "Timed", true},     {"On", "Freerun", none, false},
        {"On", "Freerun", "Timed", false},  {"On", "Freerun", "TriggerWidth", true},
    };
    for (const auto& [mode, source, exposure, isTriggered] : cases) {
        HandlerWithFakes fakes;
        for (const auto& [feature, value] :
             {std::pair("TriggerMode", mode), std::pair("TriggerSource", source),
              std::pair("ExposureMode", exposure)}) {
            if (value != none)
                fakes.features->put(feature, std::string(value));
        }
        EXPECT_EQ(fakes.handler.isTriggered(), isTriggered)
            << mode << ' ' << source << ' ' << exposure;
    }
    HandlerWithFakes otherTypes;
    otherTypes.features->put("TriggerMode", true);
    otherTypes.features->put("ExposureMode", std::int64_t{1});
    EXPECT_FALSE(otherTypes.handler.isTriggered());
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

std::string newSize(int size) {
    return infoLine + ": Adjust packet size, new value: " + std::to_string(size) + " bytes.\n";
}

TEST(CameraHandlerPacketSize, warnsBelowJumboFrames) {
    const std::string jumbo =
        warningLine + ": The current packet size is below the recommended value. This affects the "
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
         warningLine + ": Cannot get feature 'GVSPAdjustPacketSize'" + missing},
        {[](auto& f) { ON_CALL(*f.command, RunCommand).WillByDefault(ioError()); },
         warningLine + ": Error while executing GVSPAdjustPacketSize" + ioErrorText + '\n'},
        {[](auto& f) { f.parts.stream->removeFeature("GVSPPacketSize"); },
         warningLine + ": Cannot get feature 'GVSPPacketSize'" + missing},
        {[](auto& f) { f.parts.stream->addFeature("GVSPPacketSize", makeStringFeature("large")); },
         warningLine + ": Cannot get value of 'GVSPPacketSize' (The feature type for this access "
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

TEST(CameraHandlerPacketSize, waitsNoLongerThanItsLimitAndOnceForACommandThatNeverCompletes) {
    using namespace std::chrono_literals;
    PacketSizeFakes fakes(8000);
    CameraHandler handler(fakes.parts.camera, fakes.features, 20ms);
    ON_CALL(*fakes.command, IsCommandDone).WillByDefault(answer(false));
    EXPECT_CALL(*fakes.command, RunCommand).Times(1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(handler.adjustPacketSize(true));
    EXPECT_FALSE(handler.adjustPacketSize(true));
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, 20ms);
    EXPECT_LT(waited, 2s);
    EXPECT_EQ(CameraHandler::usualPacketSizeLimit, 5s);
    EXPECT_TRUE(fakes.log.has(warningLine + ": Error while executing GVSPAdjustPacketSize "
                                            "(Timeout during wait)"));
}

} // namespace
