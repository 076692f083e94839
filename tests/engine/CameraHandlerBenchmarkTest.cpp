// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/CameraFixture.h"
#include "tests/support/FakeFrame.h"

namespace {

using namespace testing;

TEST(CameraHandlerBenchmark, tellsHowStartingEnded) {
    const std::pair<OrvErrorType, std::string> cases[] = {
        {OrvErrorSuccess, infoLine + ": Acquisition started successfully."},
        {OrvErrorAlreadyDone, infoLine + ": Acquisition already started."},
        {OrvErrorIO, warningLine + ": Cannot start acquisition." + ioErrorText}};
    for (const auto& [result, text] : cases) {
        HandlerWithFakes fakes;
        EXPECT_CALL(*fakes.parts.camera, StartContinuousImageAcquisition(5, _, _))
            .WillOnce(Return(result));
        fakes.handler.startAcquisition();
        EXPECT_THAT(fakes.log.lines(), ElementsAre(text));
        EXPECT_EQ(fakes.handler.isAcquiring(), result == OrvErrorSuccess);
    }
}

TEST(CameraHandlerBenchmark, tellsHowStoppingEnded) {
    const std::pair<OrvErrorType, std::string> cases[] = {
        {OrvErrorSuccess, infoLine + ": Acquisition stopped successfully.\n" + infoLine +
                              ": Lost frames: 0, Incomplete frames: 0\n"},
        {OrvErrorAlreadyDone, infoLine + ": Acquisition already stopped.\n"},
        {OrvErrorIO, warningLine + ": Cannot stop acquisition." + ioErrorText + '\n'}};
    for (const auto& [result, text] : cases) {
        HandlerWithFakes fakes;
        EXPECT_CALL(*fakes.parts.camera, StartContinuousImageAcquisition)
            .WillOnce(Return(OrvErrorSuccess))
            .WillOnce(Return(OrvErrorAlreadyDone))
            .WillOnce(ioError());
        for (int start = 0; start < 3; ++start)
            fakes.handler.startAcquisition();
        EXPECT_TRUE(fakes.handler.isAcquiring()) << "no further start stops it";
        fakes.log.clear();
        ON_CALL(*fakes.parts.camera, StopContinuousImageAcquisition())
            .WillByDefault(Return(result));
        fakes.handler.stopAcquisition();
        EXPECT_EQ(fakes.log.text(), text);
        EXPECT_EQ(fakes.handler.isAcquiring(), result == OrvErrorIO);
    }
}

TEST(CameraHandlerBenchmark, startsInSpiteOfSocketDriverAndTrigger) {
    HandlerWithFakes fakes;
    fakes.parts.stream->addFeature("GVSPDriver", makeStringFeature("Socket"));
    fakes.features->put("TriggerMode", std::string("On"));
    fakes.handler.startAcquisition();
    EXPECT_THAT(fakes.log.lines(), ElementsAre(warningLine + " is using Socket driver.",
                                               infoLine + " is configured for triggering.",
                                               infoLine + ": Acquisition started successfully."));
    EXPECT_EQ(fakes.handler.getWarningText(), "Socket driver in use, please use Filter Driver.");
    fakes.parts.stream->addFeature("GVSPDriver", makeStringFeature("Filter"));
    fakes.handler.startAcquisition();
    EXPECT_EQ(fakes.handler.getWarningText(), "");
}

/// Delivers frames to the observer that the handler starts with.
struct Delivery {
    explicit Delivery(MockCamera& camera) {
        ON_CALL(camera, StartContinuousImageAcquisition)
            .WillByDefault([this](int, const auto& given, auto) {
                observer = given;
                return OrvErrorType{OrvErrorSuccess};
            });
    }
    void deliver(std::uint64_t id, OrvFrameStatusType status = OrvFrameStatusComplete) {
        auto frame = std::make_shared<FakeFrame>(id);
        frame->status = status;
        observer->FrameReceived(frame);
    }
    std::shared_ptr<OrvCPP::IFrameObserver> observer;
};

TEST(CameraHandlerBenchmark, countsFromOneOnGigEAndFromZeroElsewhereUntilTheNextStart) {
    for (const auto type : {OrvTransportLayerTypeGEV, OrvTransportLayerTypeU3V}) {
        const std::uint64_t first = type == OrvTransportLayerTypeGEV ? 1 : 0;
        HandlerWithFakes fakes(type);
        Delivery delivery(*fakes.parts.camera);
        const auto statistics = [&fakes] {
            return fakes.handler.getFrameStatistics();
        };
        fakes.handler.startAcquisition();
        delivery.deliver(first);
        EXPECT_EQ(statistics().lostFrames, 0);
        EXPECT_EQ(statistics().lastFrameId, 1);
        delivery.deliver(first + 3, OrvFrameStatusIncomplete);
        fakes.handler.stopAcquisition();
        EXPECT_TRUE(fakes.log.has(infoLine + ": Lost frames: 2, Incomplete frames: 1"));
        EXPECT_EQ(statistics().receivedFrames, 2U);

        // A second start clears them, even when the camera is streaming already, but not what
        // arrives before it has ended.
        ON_CALL(*fakes.parts.camera, StartContinuousImageAcquisition).WillByDefault([&](auto&&...) {
            delivery.deliver(first);
            return OrvErrorType{OrvErrorAlreadyDone};
        });
        fakes.handler.startAcquisition();
        EXPECT_EQ(statistics().receivedFrames, 1U);
        EXPECT_EQ(statistics().lostFrames, 0);
    }
}

} // namespace
