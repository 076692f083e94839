// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ThroughputDock.h"

#include "chart/StackedChart.h"

#include <QtWidgets>
#include <gmock/gmock.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_intervalcurve.h>

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using viewer::CountedCamera;
using viewer::ThroughputHistory;
using viewer::ThroughputPlot;

namespace {

CountedCamera camera(const QString& name, double megabytes, std::uint64_t bad = 0) {
    return {name, name, QStringLiteral("IF"), {static_cast<std::uint64_t>(megabytes * 1e6), bad}};
}

// Closes the file, because Windows replaces no open file.
std::string contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

template <class Item> std::vector<const Item*> itemsOf(const QwtPlot& plot, int type) {
    std::vector<const Item*> items;
    for (const QwtPlotItem* item : plot.itemList(type))
        items.push_back(static_cast<const Item*>(item));
    return items;
}

TEST(ThroughputPlot, stacksTheCamerasBelowTheirLinkAndTellsTheNumbersAtATime) {
    const QString low = QStringLiteral("Low");
    const QString high = QStringLiteral("<High>");
    ThroughputHistory history;
    history.add(0.0, {camera(low, 0), camera(high, 0)});
    history.add(20.0, {camera(low, 400), camera(high, 1000)});
    history.add(40.0, {camera(low, 800), camera(high, 2000, 4)});
    ThroughputPlot plot;
    EXPECT_EQ(plot.tip(0.0), QString()) << "nothing was measured";
    plot.showHistory(history, {0.0, 100.0, 125.0});

    const auto areas = itemsOf<QwtPlotIntervalCurve>(plot, QwtPlotItem::Rtti_PlotIntervalCurve);
    ASSERT_EQ(areas.size(), 2U);
    for (std::size_t i = 0; i < areas.size(); ++i) {
        const QwtIntervalSample last = areas[i]->sample(2);
        EXPECT_EQ(last.value, 0.0) << "now";
        EXPECT_EQ(last.interval, i == 0 ? QwtInterval(0.0, 20.0) : QwtInterval(20.0, 70.0));
        QColor color = areas[i]->brush().color();
        color.setAlpha(255);
        EXPECT_EQ(color.name(), chart::seriesColor(static_cast<int>(i)));
    }
    std::vector<std::string> lines;
    for (const auto* curve : itemsOf<QwtPlotCurve>(plot, QwtPlotItem::Rtti_PlotCurve)) {
        const QRectF box = curve->boundingRect();
        lines.push_back(QStringLiteral("%1 to %2: %3")
                            .arg(box.left())
                            .arg(box.right())
                            .arg(box.top())
                            .toStdString());
    }
    EXPECT_THAT(lines,
                testing::UnorderedElementsAre("0 to 0: 70", "-40 to -20: 100", "-20 to 0: 125"))
        << "where frames were lost, and two links";
    EXPECT_GT(plot.axisInterval(QwtPlot::yLeft).maxValue(), 125.0);

    const std::string now = plot.tip(3.0).toStdString();
    EXPECT_THAT(now, HasSubstr("now<br>"));
    EXPECT_THAT(now, HasSubstr(" &lt;High&gt;: 50.0 MB/s, lost or incomplete: 4<br>"));
    EXPECT_THAT(now, HasSubstr(" Low: 20.0 MB/s<br>Sum: 70.0 MB/s"));
    EXPECT_EQ(plot.tip(42.0), QString()) << "before the first sample";
    EXPECT_THAT(plot.tip(29.0).toStdString(), AllOf(HasSubstr("20 s ago"), Not(HasSubstr("lost"))));
}

TEST(ThroughputDock, savesWhatItShowsAndSaysWhyItCannot) {
    int asked = 0;
    viewer::ThroughputDock dock([&asked](const QString& name) {
        ++asked;
        return name == QStringLiteral("IF") ? std::optional(640.0) : std::nullopt;
    });
    dock.show();
    for (const double megabytes : {0.0, 1.0, 2.0})
        dock.addSample({camera(QStringLiteral("Feeder & Co"), megabytes)});
    EXPECT_EQ(asked, 1);

    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("out.svg"));
    EXPECT_EQ(dock.save(file), QString());
    EXPECT_THAT(contentsOf(file),
                AllOf(HasSubstr("Feeder &amp; Co"), HasSubstr("Throughput of the last minute")));

    // A hidden dock is saved with its last minute, and without a camera that sent nothing.
    dock.hide();
    dock.addSample({camera(QStringLiteral("Silent"), 0), camera(QStringLiteral("Late"), 0)});
    dock.addSample({camera(QStringLiteral("Silent"), 0), camera(QStringLiteral("Late"), 9)});
    EXPECT_EQ(dock.save(file), QString());
    EXPECT_THAT(contentsOf(file), AllOf(HasSubstr("2  Late"), Not(HasSubstr("Silent")),
                                        HasSubstr(chart::seriesColor(2).toStdString())));

    const QString nowhere = folder.filePath(QStringLiteral("none/out.svg"));
    const std::string error = dock.save(nowhere).toStdString();
    EXPECT_THAT(
        error, HasSubstr(QDir::toNativeSeparators(nowhere).toStdString() + " cannot be written: "));
    EXPECT_GT(error.size(), nowhere.toStdString().size() + 25) << "and why";
}

} // namespace
