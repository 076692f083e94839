// SPDX-License-Identifier: BSD-3-Clause
#include "losses/LossEvidence.h"

#include "features/FeatureController.h"
#include "tests/support/CameraParts.h"

namespace {

TEST(LossEvidence, countsSinceTheStreamBeganOrFromNowOn) {
    const CameraParts parts(gige);
    parts.stream->addFeature("GVSPPacketSize", makeIntFeature(1400));
    const auto missing = parts.stream->addFeature("GevStreamLostPacketCount", makeIntFeature(20));
    const auto gaps = parts.stream->addFeature("StreamLostFrameGapCount", makeIntFeature(3));
    std::optional<FrameStatistics> frames;
    int questions = 0;
    ObservedCamera camera;
    camera.features = std::make_shared<FeatureController>(parts.camera, "Cam");
    camera.frames = [&frames] {
        return frames;
    };
    camera.isTriggered = [&questions] {
        return ++questions > 0;
    };
    LossEvidence whole("IF_1", {camera}, true);
    whole.noteEnd();
    EXPECT_TRUE(whole.evidence().cameras.empty()) << "does not stream";
    frames.emplace();
    whole.noteEnd();
    EXPECT_TRUE(whole.evidence().cameras.at(0).isTriggered);

    frames->receivedFrames = 100;
    frames->lostFrames = -65'535; // Its numbers began anew.
    LossEvidence part("IF_1", {camera}, true);
    part.startFromNow();
    frames->receivedFrames = 130;
    frames->lostFrames = -65'536;
    EXPECT_FALSE(part.hasBadFrames());
    frames->lostFrames = -65'534;
    EXPECT_TRUE(part.hasBadFrames());
    missing->SetValue(std::int64_t{24});
    gaps->SetValue(std::int64_t{2});
    whole.noteEnd();
    part.noteEnd();
    const CameraEvidence& all = whole.evidence().cameras.at(0);
    EXPECT_EQ(all.framesReceived, 130U);
    EXPECT_EQ(all.packetsMissing, 24U);
    const CameraEvidence& few = part.evidence().cameras.at(0);
    EXPECT_EQ(few.framesReceived, 30U);
    EXPECT_EQ(few.framesLost, 1U);
    EXPECT_EQ(few.packetsMissing, 4U);
    EXPECT_EQ(few.gaps, std::nullopt) << "was begun anew";
    EXPECT_EQ(few.packetSize, 1400U) << "is no count";
    EXPECT_EQ(questions, 1) << "of a silent camera only";
}

} // namespace
