// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

namespace chart {

/// What one camera sent over time.
struct Series {
    /// Any text; it is escaped.
    QString name;
    /// A rate in MB/s (10^6 bytes) for each time of the chart. Absent, negative and infinite rates
    /// and those that are no number count as 0.
    std::vector<double> megabytesPerSecond;
    /// When frames were lost, in the unit and range of the chart's times. Others are left out.
    std::vector<double> lostAtSeconds;
    /// Index for seriesColor(); that of its place in the chart when there is none.
    std::optional<int> color = std::nullopt;
};

/// A link that is faster than so many times the highest rate would make the areas flat: it is told
/// in words.
inline constexpr double highestLink = 5;

/// Rates of cameras that share a link, one above the other.
struct StackedChart {
    QString title;
    /// Ascending. Times that do not ascend, or are no finite number, are left out with their rates.
    std::vector<double> seconds;
    /// The first one is the lowest of the stack.
    std::vector<Series> series;
    /// What the link carries in MB/s, above 0 and finite, else it is not known; drawn as a dashed
    /// line up to highestLink.
    std::optional<double> linkMegabytesPerSecond;
};

/// What can be drawn of a chart, with a rate of each series for each of its times. Reentrant.
StackedChart validated(const StackedChart& chart);

/// The validated chart with at most so many times: groups of times that follow each other are
/// replaced by their mean, and rates likewise. Losses and the link stay as they are. \p mostTimes
/// is above 0. Reentrant.
StackedChart averaged(const StackedChart& chart, std::size_t mostTimes);

/// Mean of the rates of a validated chart's series in MB/s; 0 when it has none.
double meanRate(const Series& series);

/// The colour of the series with this index from 0 as "#rrggbb". Colours repeat after eight.
QString seriesColor(int index);

/// The chart as an SVG element in UTF-8, without an XML declaration, so that a page may contain it;
/// it is also a complete file. It has a title and a description for screen readers, numbers in its
/// legend and, up to 24 series, at their areas, which tell them apart without colours, and a style
/// of its own for dark screens. It refers to no other file and no script. Never fails. Reentrant;
/// its words are translated in the context "chart::Drawing".
QByteArray toSvg(const StackedChart& chart);

} // namespace chart
