// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace {

const auto oversubscribed = QStringLiteral(" --interface GEV-enp3s0 --config :oversubscribed");

QJsonObject runForJson(const QString& line) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(line + QStringLiteral(" --json")), 0) << spanlet.err().toStdString();
    return spanlet.json();
}

TEST(Benchmark, countsWhatArrives) {
    const QJsonObject result =
        runForJson(QStringLiteral("benchmark --seconds 1.5 --interface GEV-enp3s0"));
    EXPECT_NEAR(result[QStringLiteral("seconds")].toDouble(), 1.5, 0.5);
    EXPECT_FALSE(result[QStringLiteral("interrupted")].toBool(true));
    ASSERT_EQ(camerasOf(result).size(), 3);
    for (const QJsonValue& camera : camerasOf(result)) {
        EXPECT_GT(camera[QStringLiteral("receivedFrames")].toInt(), 3);
        EXPECT_EQ(camera[QStringLiteral("sentFrames")], camera[QStringLiteral("receivedFrames")]);
        EXPECT_GT(camera[QStringLiteral("payloadBytes")].toDouble(), 3e6);
    }
    EXPECT_EQ(sumOf(result, "lostFrames"), 0);
}

TEST(Benchmark, failsOnLossWhereThatIsAskedFor) {
    SpanletProcess strict;
    EXPECT_EQ(strict.run(QStringLiteral("benchmark --fail-on-loss --seconds 1") + oversubscribed),
              1);
    EXPECT_THAT(strict.out().toStdString(), HasSubstr("Incomplete"));
    EXPECT_THAT(strict.err().toStdString(),
                HasSubstr("Warning: MRD GigE Interface enp3s0: The limits of the cameras add up to "
                          "240.0 MB/s, but only 112.5 MB/s are usable"));
    const QJsonObject result = runForJson(QStringLiteral("benchmark --seconds 1") + oversubscribed);
    EXPECT_GT(sumOf(result, "lostFrames"), 0);
    // The average of a second is the count, since lost frames do not shorten an average.
    for (const QJsonValue& camera : camerasOf(result))
        EXPECT_NEAR(camera[QStringLiteral("framesPerSecond")].toDouble(),
                    camera[QStringLiteral("receivedFrames")].toInt(), 1.5);
}

TEST(Benchmark, failsWhenACameraVanishes) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(QStringLiteral(
                  "benchmark --seconds 1.5 --json --interface GEV-e0 --config " SCENARIO_FILE)),
              1);
    EXPECT_TRUE(camerasOf(spanlet.json())[0][QStringLiteral("measured")].toBool());
    EXPECT_FALSE(camerasOf(spanlet.json())[1][QStringLiteral("measured")].toBool(true));
}

TEST(AutoSet, losesNoFrameAfterwards) {
    const QJsonObject result = runForJson(QStringLiteral("autoset --benchmark 1") + oversubscribed);
    EXPECT_GT(sumOf(result[QStringLiteral("benchmarkBefore")].toObject(), "lostFrames"), 0);
    const QJsonObject after = result[QStringLiteral("benchmarkAfter")].toObject();
    EXPECT_EQ(sumOf(after, "lostFrames") + sumOf(after, "incompleteFrames"), 0);
    EXPECT_GT(sumOf(after, "receivedFrames"), 9);
}

TEST(AutoSet, dividesWhatAnInterfaceCarries) {
    const struct {
        const char* options;
        double bytesPerSecond;
        int marginPercent;
    } cases[] = {{"GEV-enp3s0", 112.5e6, 10},
                 {"U3V-0-20-0", 437.5e6, 30},
                 {"GEV-enp3s0 --interface-margin 0", 125e6, 0},
                 {"GEV-enp3s0 --max-bandwidth 50", 45e6, 10}};
    for (const auto& expected : cases) {
        const QJsonObject result =
            runForJson(QStringLiteral("autoset --config :oversubscribed --interface ") +
                       QLatin1String(expected.options));
        EXPECT_NEAR(sumOf(result, "bandwidthBytesPerSecond"), expected.bytesPerSecond, 10);
        EXPECT_EQ(result[QStringLiteral("interfaceMarginPercent")].toInt(), expected.marginPercent);
    }
}

TEST(AutoSet, leavesLockedCamerasAlone) {
    SpanletProcess spanlet;
    const auto line = QStringLiteral("autoset --json -v --lock GEV-211001 --lock 211002");
    EXPECT_EQ(spanlet.run(line + oversubscribed), 0);
    EXPECT_THAT(spanlet.err().toStdString(), HasSubstr("161.0 MB/s, but only 112.5 MB/s"));
    const std::string switched = ": feature 'DeviceLinkThroughputLimitMode' set to 'On'.";
    EXPECT_THAT(spanlet.err().toStdString(), HasSubstr("(GEV-211003)" + switched));
    EXPECT_THAT(spanlet.err().toStdString(), testing::Not(HasSubstr("(GEV-211001)" + switched)));
    const QJsonArray cameras = camerasOf(spanlet.json());
    for (const int locked : {0, 1}) {
        EXPECT_EQ(cameras[locked][QStringLiteral("bandwidthBytesPerSecond")].toDouble(), 80e6);
        EXPECT_EQ(cameras[locked][QStringLiteral("status")].toString(), QStringLiteral("locked"));
    }
    EXPECT_EQ(cameras[2][QStringLiteral("bandwidthBytesPerSecondBefore")].toDouble(), 80e6);
    EXPECT_EQ(cameras[2][QStringLiteral("bandwidthBytesPerSecond")].toDouble(), 1e6);
    EXPECT_EQ(cameras[2][QStringLiteral("status")].toString(), QStringLiteral("belowRequested"));
}

TEST(AutoSet, setsOneCamera) {
    const auto limit = [](const QString& margin) {
        const QJsonObject result =
            runForJson(QStringLiteral("autoset --camera GEV-21017 --camera-margin ") + margin);
        EXPECT_EQ(camerasOf(result).size(), 1);
        EXPECT_EQ(camerasOf(result)[0][QStringLiteral("status")].toString(),
                  QStringLiteral("requestedReached"));
        return sumOf(result, "bandwidthBytesPerSecond");
    };
    // 2464 x 2056 pixels at up to 23.5 frames per second; then with a margin of 1 %.
    const double need = limit(QStringLiteral("0"));
    EXPECT_NEAR(need, 2464.0 * 2056 * 23.5, 2e6);
    EXPECT_NEAR(limit(QStringLiteral("1")), need * 1.01, 0.01e6);
}

TEST(Watch, printsLinesWhereThereIsNoTerminal) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(QStringLiteral("watch --interface GEV-e0 --seconds 2 --interval 0.4 "
                                         "--config " SCENARIO_FILE)),
              1);
    const std::string text = spanlet.out().toStdString();
    EXPECT_THAT(text, HasSubstr("     0.4  CAM-A"));
    // The camera vanishes after a second: the rate is that of the last 0.4 s.
    EXPECT_THAT(text, HasSubstr("     1.6  CAM-B   Twin      0.00 "));
    EXPECT_THAT(text, HasSubstr("\nMRD GigE Interface e0, 2.0 s\n"));
    EXPECT_THAT(text, Not(HasSubstr("\x1b")));
}

} // namespace
