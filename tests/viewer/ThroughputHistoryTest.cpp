// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ThroughputHistory.h"

#include <gmock/gmock.h>

using testing::DoubleEq;
using testing::ElementsAre;
using testing::Pointwise;
using viewer::CountedCamera;
using viewer::ThroughputHistory;

namespace {

/// A camera of an interface that has the first letter of its name.
CountedCamera counted(const char* name, std::uint64_t megabytes, std::uint64_t bad = 0) {
    const QString text = QString::fromLatin1(name);
    return {text, text, text.left(1), {megabytes * 1'000'000, bad}};
}

TEST(ThroughputHistory, averagesTwoIntervalsAndBeginsWithWhatItSeesFirst) {
    ThroughputHistory history;
    history.add(10.0, {counted("A1", 500, 3)});
    history.add(10.5, {counted("A1", 510, 3)});
    history.add(11.0, {counted("A1", 540, 5), counted("B1", 900)});
    history.add(12.0, {counted("A1", 540, 5), counted("B1", 960)});
    // The one is gone, the other counts anew.
    history.add(12.5, {counted("B1", 15, 1)});
    history.add(13.0, {counted("A1", 10), counted("B1", 15, 1)});
    history.add(13.5, {counted("A1", 20), counted("B1", 16, 1)});

    const auto series = history.series();
    ASSERT_EQ(series.size(), 2U);
    EXPECT_THAT(series[0].megabytesPerSecond,
                Pointwise(DoubleEq(), {0.0, 20.0, 40.0, 20.0, 0.0, 0.0, 10.0}));
    EXPECT_THAT(series[1].megabytesPerSecond,
                Pointwise(DoubleEq(), {0.0, 0.0, 0.0, 40.0, 50.0, 15.0, 1.0}));
    EXPECT_THAT(series[0].badFrames, ElementsAre(0, 0, 2, 0, 0, 0, 0));
    EXPECT_THAT(series[1].badFrames, ElementsAre(0, 0, 0, 0, 1, 0, 0));
    std::string interfaces;
    for (const QString& name : history.interfaceNames())
        interfaces += name.toStdString() + ' ';
    EXPECT_EQ(interfaces, " A A B B B  ") << "none, then one each, then both";
}

TEST(ThroughputHistory, countsALostFrameOnce) {
    ThroughputHistory history;
    history.add(1.0, {counted("A1", 10, 900)});
    history.add(2.0, {counted("A1", 20, 903)});
    history.add(3.0, {counted("A1", 20, 901)}); // Two came late.
    history.add(4.0, {counted("A1", 30, 904)});
    history.add(5.0, {counted("A1", 7, 2)}); // Counts anew.
    EXPECT_THAT(history.series()[0].badFrames, ElementsAre(0, 3, 0, 1, 2));
}

TEST(ThroughputHistory, keepsAMinuteAndThePlacesOfItsCameras) {
    ThroughputHistory history;
    history.add(0.0, {counted("A1", 0)});
    history.add(1.0, {counted("A1", 7)});
    for (int second = 2; second <= 61; ++second)
        history.add(second, {counted("B1", static_cast<std::uint64_t>(second))});
    EXPECT_EQ(history.seconds().front(), 1.0);
    EXPECT_EQ(history.seconds().size(), 61U);
    EXPECT_TRUE(history.series()[0].isActive());

    history.add(62.0, {counted("B1", 62)});
    history.add(63.0, {counted("B1", 63)});
    const auto series = history.series();
    EXPECT_EQ(series[1].name, QStringLiteral("B1")) << "its colour stays";
    EXPECT_EQ(series[1].megabytesPerSecond.front(), 0.5) << "of samples before the minute, too";
    EXPECT_FALSE(series[0].isActive());
}

} // namespace
