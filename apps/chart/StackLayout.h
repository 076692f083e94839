// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "chart/StackedChart.h"

#include <cstddef>
#include <vector>

namespace chart {

/// Where the times, rates and losses of a chart lie in its picture. Lengths are in units of the
/// picture, rates in MB/s. Edges are counted from 0, the time axis; that above a series has the
/// series' index and 1. Reentrant.
class StackLayout {
public:
    /// Ends of the axes.
    static constexpr double left = 62;
    static constexpr double right = 716;
    static constexpr double top = 52;
    static constexpr double bottom = 272;

    explicit StackLayout(const StackedChart& chart);

    /// All that can be drawn of the chart.
    const StackedChart& full() const { return m_full; }
    /// As many points as the picture can show.
    const StackedChart& drawn() const { return m_drawn; }
    bool isEmpty() const { return m_drawn.seconds.empty(); }

    /// Range of the time axis in seconds, and end of the rate axis, which begins at 0.
    double start() const { return m_start; }
    double end() const { return m_end; }
    double mostRate() const { return m_mostRate; }
    /// What the link carries; 0 where it is not known. It is shown up to highestLink.
    double link() const { return m_link; }
    bool isLinkShown() const { return m_isLinkShown; }

    double x(double seconds) const;
    double y(double rate) const;
    /// Rate of an edge at a drawn point, or at any time of the axis, in a chart that is not empty.
    double rateOf(std::size_t edge, std::size_t point) const { return m_edges[edge][point]; }
    double rateAt(std::size_t edge, double seconds) const;
    /// When frames of a series were lost, within the time axis, ascending.
    std::vector<double> lossesOf(std::size_t series) const;
    /// Heights for a number beside the end of each series' area, \p fontHeight apart where there is
    /// room; empty where they would be closer than \p leastDistance.
    std::vector<double> numberHeights(double fontHeight, double leastDistance) const;

private:
    const StackedChart m_full;
    const StackedChart m_drawn;
    /// Sums of the rates.
    std::vector<std::vector<double>> m_edges;
    double m_start = 0;
    double m_end = 1;
    double m_link = 0;
    bool m_isLinkShown = false;
    double m_mostRate = 1;
};

} // namespace chart
