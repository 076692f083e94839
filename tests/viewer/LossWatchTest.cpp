// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/LossWatch.h"

#include "features/FeatureController.h"
#include "tests/support/CameraParts.h"
#include "viewer/ProgramResources.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>
#include <gmock/gmock.h>

using viewer::LossWatch;

namespace {

TEST(LossWatch, judgesTheLastLooksAndKeepsItsTextUntilTheyArePast) {
    const CameraParts parts(gige);
    FrameStatistics frames;
    frames.receivedFrames = 1000;
    frames.lostFrames = 500;
    ObservedCamera camera;
    camera.features = std::make_shared<FeatureController>(parts.camera, "Cam");
    camera.frames = [&frames] {
        return frames;
    };
    LossWatch watch("IF_1", std::move(camera), true);
    // Looks after so many frames more, of which some were lost.
    const auto look = [&](std::uint64_t received, std::int64_t lost) {
        frames.receivedFrames += received;
        frames.lostFrames += lost;
        return watch.look().toStdString();
    };
    EXPECT_EQ(look(10, 0), "") << "what was lost before is left out";
    const std::string text = look(10, 2);
    EXPECT_THAT(text, testing::HasSubstr("Of 22 frames, 2 were lost and 0 came incomplete"));
    for (std::size_t i = 1; i < LossWatch::looks; ++i)
        EXPECT_EQ(look(10, 0), text) << i;
    EXPECT_EQ(look(10, 0), "");

    frames.incompleteFrames = 3;
    EXPECT_THAT(look(10, 0), testing::HasSubstr("Of 50 frames, 0 were lost and 3 came incomplete"));
    EXPECT_THAT(look(5, 1), testing::HasSubstr("Of 46 frames, 1 were lost and 3 came incomplete"));

    QTranslator german;
    ASSERT_TRUE(viewer::loadTexts(german, QLocale(QStringLiteral("de_AT"))));
    QCoreApplication::installTranslator(&german);
    EXPECT_EQ(look(1, 1), "Wo Bilder verloren gingen: unbekannt. 38 Bilder, davon 2 verloren und 3 "
                          "unvollst\u00e4ndig; simulierte Kameras haben keine Z\u00e4hler eines "
                          "Netzwerks.");
}

} // namespace
