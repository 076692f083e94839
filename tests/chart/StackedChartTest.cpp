// SPDX-License-Identifier: BSD-3-Clause
#include "chart/StackedChart.h"

#include <QStringList>
#include <QXmlStreamReader>

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::Le;
using testing::Not;

namespace {

constexpr double nothing = std::numeric_limits<double>::quiet_NaN();
constexpr double endless = std::numeric_limits<double>::infinity();

/// What a reader of the picture finds in it.
struct Picture {
    bool isValid = false;
    std::vector<std::string> texts;
    std::vector<std::string> titles;
    /// The vertical places of each area's points.
    std::vector<std::vector<double>> areas;
};

Picture read(const chart::StackedChart& chart) {
    Picture picture;
    QXmlStreamReader reader(chart::toSvg(chart));
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == QLatin1String("polygon")) {
            picture.areas.emplace_back();
            const QString points = reader.attributes().value(QLatin1String("points")).toString();
            for (const QString& point : points.split(QLatin1Char(' '), Qt::SkipEmptyParts))
                picture.areas.back().push_back(point.section(QLatin1Char(','), 1).toDouble());
        } else if (reader.name() == QLatin1String("title")) {
            picture.titles.push_back(reader.readElementText().toStdString());
        } else if (reader.name() == QLatin1String("text")) {
            picture.texts.push_back(reader.readElementText().toStdString());
        }
    }
    picture.isValid = !reader.hasError();
    return picture;
}

TEST(StackedChart, stacksRatesBelowTheLinkAndMarksLosses) {
    const Picture picture = read({QStringLiteral("Before & after"),
                                  {0, 1, 2},
                                  {{QStringLiteral("<b>\"&\u0001"), {50, 50, 50}, {}},
                                   {QStringLiteral("Right"), {25, 25, 50}, {1, 1.01, 2, 7}}},
                                  110});
    ASSERT_TRUE(picture.isValid);
    // The axis ends at 120: 220 units for 120 MB/s above the line at 272.
    EXPECT_THAT(picture.areas, ElementsAre(ElementsAre(180.3, 180.3, 180.3, 272, 272, 272),
                                           ElementsAre(134.5, 134.5, 88.7, 180.3, 180.3, 180.3)));
    EXPECT_THAT(picture.titles, ElementsAre("Before & after", "<b>\"&?", "Right",
                                            "Right: frames lost from 1.00 s to 1.01 s",
                                            "Right: frames lost at 2.00 s"));
    for (const char* text : {"MB/s", "Time in s", "120", "1.2", "Link: 110.0 MB/s", "1  <b>\"&?",
                             "2  Right", "frames lost"})
        EXPECT_THAT(picture.texts, Contains(text));
}

TEST(StackedChart, drawsWhatIsMeasuredOfBadData) {
    const chart::Series bad{QStringLiteral("Bad"), {nothing, -5, endless, 1e308}, {nothing, -1}};
    const chart::StackedChart charts[] = {
        {},
        {QStringLiteral("No time"), {}, {bad}, nothing},
        {QStringLiteral("One time"), {3}, {bad, bad}, -1},
        {QStringLiteral("Bad times"), {nothing, 2, 1, endless, 2.5}, {bad, {}}, endless},
        {QStringLiteral("Large"), {0, 1, 2, 1e300}, {bad}, 1e308},
        {QStringLiteral("Zero"), {0, 1}, {{QStringLiteral("Still"), {0, 0}, {0.5}}}, 1000},
    };
    for (const chart::StackedChart& chart : charts) {
        const QByteArray svg = chart::toSvg(chart);
        EXPECT_FALSE(svg.contains("nan") || svg.contains("inf")) << svg.constData();
        const Picture picture = read(chart);
        EXPECT_TRUE(picture.isValid) << svg.constData();
        EXPECT_EQ(picture.areas.size(), chart.series.size());
        for (const auto& area : picture.areas)
            EXPECT_THAT(area, Each(AllOf(Ge(52), Le(272))));
    }
    EXPECT_THAT(read(charts[0]).texts, Contains("No rates were measured."));
    // The times 2 and 2.5 are left.
    EXPECT_EQ(read(charts[3]).areas[0].size(), 4U);
    EXPECT_THAT(read(charts[5]).texts, Contains("Link: 1000.0 MB/s, above this chart"));
}

TEST(StackedChart, shortensNamesAndHasNumbersWhereThereIsRoom) {
    const QString emoji = QString::fromUtf8("\U0001F600");
    chart::StackedChart chart{
        emoji.repeated(43), {0, 1}, {{emoji.repeated(21), {1, 1}, {}, 9}}, {}};
    while (chart.series.size() < 24)
        chart.series.push_back({QStringLiteral("Camera"), {1, 1}, {}});
    const Picture picture = read(chart);
    ASSERT_TRUE(picture.isValid);
    EXPECT_THAT(picture.texts, Contains((emoji.repeated(41) + QChar(0x2026)).toStdString()));
    EXPECT_THAT(picture.texts,
                Contains("1  " + (emoji.repeated(19) + QChar(0x2026)).toStdString()));
    EXPECT_THAT(picture.texts, Contains("23"));
    EXPECT_EQ(chart::toSvg(chart).count(chart::seriesColor(9).toUtf8()), 8);
    chart.series.push_back({});
    EXPECT_THAT(read(chart).texts, Not(Contains("23")));
}

TEST(StackedChart, averagesMorePointsThanItCanShow) {
    chart::StackedChart chart{QStringLiteral("A day"), {}, {{QStringLiteral("Camera"), {}, {}}}, 9};
    for (int second = 0; second < 86400; ++second) {
        chart.seconds.push_back(second);
        chart.series[0].megabytesPerSecond.push_back(second % 2 == 0 ? 4 : 6);
    }
    const Picture picture = read(chart);
    ASSERT_EQ(picture.areas.size(), 1U);
    const std::vector<double>& area = picture.areas[0];
    EXPECT_LE(area.size(), 1300U);
    // 5 of 10 MB/s.
    EXPECT_THAT(std::vector<double>(area.begin(), area.begin() + 600), Each(Le(164)));
    EXPECT_THAT(std::vector<double>(area.begin(), area.begin() + 600), Each(Ge(160)));
}

} // namespace
