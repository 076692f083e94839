// SPDX-License-Identifier: BSD-3-Clause
#include "losses/LossEvidence.h"

#include "features/FeatureController.h"
#include "tests/support/CameraParts.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace {

/// The evidence of a camera that counts in memory.
class LossEvidenceTest : public testing::Test {
protected:
    LossEvidenceTest() { setCount("GVSPPacketSize", 1400); }

    void setCount(const char* feature, std::int64_t value) {
        auto& known = m_counts[feature];
        if (!known)
            known = m_parts.stream->addFeature(feature, makeIntFeature(0));
        known->SetValue(value);
    }
    void setFrames(std::uint64_t received, std::uint64_t incomplete, std::int64_t lost) {
        m_frames.emplace();
        m_frames->receivedFrames = received;
        m_frames->incompleteFrames = incomplete;
        m_frames->lostFrames = lost;
    }
    LossEvidence makeEvidence() {
        ObservedCamera camera;
        camera.id = "DEV_1";
        camera.features = std::make_shared<FeatureController>(m_parts.camera, "Cam");
        camera.frames = [this] {
            return m_frames;
        };
        camera.isTriggered = [this] {
            ++m_triggerQuestions;
            return true;
        };
        return {"IF_1", {camera}, true};
    }

    CameraParts m_parts{gige};
    std::map<std::string, NiceFeature> m_counts;
    std::optional<FrameStatistics> m_frames;
    int m_triggerQuestions = 0;
};

TEST_F(LossEvidenceTest, countsSinceTheStreamBeganOrFromNowOn) {
    auto whole = makeEvidence();
    setFrames(100, 5, 7);
    whole.noteStart();
    setCount("GevStreamLostPacketCount", 20);
    setCount("StreamLostFrameGapCount", 3);
    auto part = makeEvidence();
    part.startFromNow();
    EXPECT_TRUE(whole.hasBadFrames());
    EXPECT_FALSE(part.hasBadFrames());

    setFrames(130, 6, 9);
    setCount("GevStreamLostPacketCount", 24);
    setCount("StreamLostFrameGapCount", 2);
    EXPECT_TRUE(part.hasBadFrames());
    whole.noteEnd();
    part.noteEnd();
    const CameraEvidence& all = whole.evidence().cameras.at(0);
    EXPECT_EQ(all.framesReceived, 130U);
    EXPECT_EQ(framesBad(all), 15U);
    EXPECT_EQ(all.packetsMissing, 24U);
    const CameraEvidence& few = part.evidence().cameras.at(0);
    EXPECT_EQ(few.framesReceived, 30U);
    EXPECT_EQ(few.framesIncomplete, 1U);
    EXPECT_EQ(few.framesLost, 2U);
    EXPECT_EQ(few.packetsMissing, 4U);
    EXPECT_EQ(few.gaps, std::nullopt) << "was begun anew";
    EXPECT_EQ(few.packetSize, 1400U) << "is no count";
    EXPECT_EQ(m_triggerQuestions, 0);
}

TEST_F(LossEvidenceTest, seesLossesAfterFrameNumbersBeganAnew) {
    setFrames(70'000, 0, -65'535);
    auto evidence = makeEvidence();
    evidence.startFromNow();
    setFrames(70'100, 0, -65'534);
    EXPECT_TRUE(evidence.hasBadFrames());
    setFrames(70'100, 0, -131'000);
    EXPECT_FALSE(evidence.hasBadFrames());
}

TEST_F(LossEvidenceTest, asksForTriggersWhileNothingComes) {
    auto evidence = makeEvidence();
    evidence.noteStart();
    evidence.noteEnd();
    EXPECT_TRUE(evidence.evidence().cameras.empty()) << "does not stream";
    setFrames(0, 0, 0);
    evidence.noteEnd();
    EXPECT_TRUE(evidence.evidence().cameras.at(0).isTriggered);
    EXPECT_EQ(m_triggerQuestions, 1);
}

} // namespace
