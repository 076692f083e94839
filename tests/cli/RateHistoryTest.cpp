// SPDX-License-Identifier: BSD-3-Clause
#include "cli/RateHistory.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

namespace {

/// The history of readings of one camera, as JSON; the last one is the result.
struct Reading {
    double seconds;
    int bytes;
    int lost;
};

std::string historyOf(const std::vector<Reading>& readings) {
    cli::RateHistory history;
    for (std::size_t i = 0; i < readings.size(); ++i) {
        const auto& [seconds, bytes, lost] = readings[i];
        const QJsonObject camera{{QStringLiteral("payloadBytes"), bytes},
                                 {QStringLiteral("lostFrames"), lost}};
        history.add({{QStringLiteral("type"), i + 1 < readings.size() ? QStringLiteral("interval")
                                                                      : QStringLiteral("result")},
                     {QStringLiteral("seconds"), seconds},
                     {QStringLiteral("cameras"), QJsonArray{camera}}});
    }
    const QJsonValue document = history.document().first();
    const QJsonValue camera = document[QStringLiteral("cameras")][0];
    return QJsonDocument(QJsonArray{document[QStringLiteral("seconds")],
                                    camera[QStringLiteral("bytesPerSecond")],
                                    camera[QStringLiteral("lostFrames")]})
        .toJson(QJsonDocument::Compact)
        .toStdString();
}

TEST(RateHistory, joinsAShortRestAndCountsALossOnce) {
    EXPECT_EQ(historyOf({{1, 100, 3}, {2, 200, 2}, {2.25, 300, 3}}),
              "[[0.5,1.625],[100,160],[3,0]]")
        << "a frame came late, and one is lost at the end";
    EXPECT_EQ(historyOf({{1, 100, 0}, {1.5, 300, 2}}), "[[0.5,1.25],[100,400],[0,2]]");
    EXPECT_EQ(historyOf({{1, 100, 1}, {1.25, 150, 3}, {1.25, 150, 3}}),
              "[[0.5,1.125],[100,200],[1,2]]")
        << "a result without time is no rest";
    EXPECT_EQ(historyOf({{1, 100, 1}, {1.25, 225, 3}}), "[[0.625],[180],[3]]");
    EXPECT_EQ(historyOf({{0.25, 100, 1}}), "[[0.125],[400],[1]]");
}

} // namespace
