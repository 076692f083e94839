// SPDX-License-Identifier: BSD-3-Clause
#include "chart/StackLayout.h"

#include "chart/AxisScale.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace chart {

namespace {

/// More points than the picture can show are averaged.
constexpr std::size_t mostPoints = 640;
constexpr double shortestSeconds = 1e-3;

/// The time axis, and the upper edge of each series.
std::vector<std::vector<double>> edgesOf(const StackedChart& chart) {
    std::vector<std::vector<double>> edges{std::vector<double>(chart.seconds.size(), 0.0)};
    for (const Series& series : chart.series) {
        std::vector<double> sums = edges.back();
        for (std::size_t i = 0; i < sums.size(); ++i)
            sums[i] += series.megabytesPerSecond[i];
        edges.push_back(std::move(sums));
    }
    return edges;
}

} // namespace

StackLayout::StackLayout(const StackedChart& chart)
    : m_full(validated(chart)), m_drawn(averaged(m_full, mostPoints)), m_edges(edgesOf(m_drawn)),
      m_link(m_full.linkMegabytesPerSecond.value_or(0)) {
    double peak = 0;
    if (!isEmpty()) {
        m_start = m_full.seconds.front();
        m_end = std::max(m_full.seconds.back(), m_start + shortestSeconds);
        peak = *std::max_element(m_edges.back().begin(), m_edges.back().end());
    }
    if (peak <= 0)
        peak = 1;
    m_isLinkShown = m_link > 0 && m_link <= highestLink * peak;
    const double most = m_isLinkShown ? std::max(peak, m_link) : peak;
    m_mostRate = AxisScale(0, most, 8).roundedUp(most);
}

double StackLayout::x(double seconds) const {
    return left + (seconds - m_start) / (m_end - m_start) * (right - left);
}

double StackLayout::y(double rate) const {
    return bottom - rate / m_mostRate * (bottom - top);
}

double StackLayout::rateAt(std::size_t edge, double seconds) const {
    const std::vector<double>& times = m_drawn.seconds;
    const std::vector<double>& rates = m_edges[edge];
    const auto after = std::upper_bound(times.begin(), times.end(), seconds);
    if (after == times.begin())
        return rates.front();
    if (after == times.end())
        return rates.back();
    const auto i = static_cast<std::size_t>(after - times.begin());
    const double part = (seconds - times[i - 1]) / (times[i] - times[i - 1]);
    return rates[i - 1] + part * (rates[i] - rates[i - 1]);
}

std::vector<double> StackLayout::lossesOf(std::size_t series) const {
    std::vector<double> times;
    for (const double time : m_full.series[series].lostAtSeconds) {
        if (time >= m_start && time <= m_end && !isEmpty())
            times.push_back(time);
    }
    std::sort(times.begin(), times.end());
    return times;
}

std::vector<double> StackLayout::numberHeights(double fontHeight, double leastDistance) const {
    const std::size_t count = m_drawn.series.size();
    if (isEmpty() || count == 0)
        return {};
    const double distance = std::min(fontHeight, (bottom - top) / static_cast<double>(count));
    if (distance < leastDistance)
        return {};
    std::vector<double> heights;
    double lowest = bottom;
    for (std::size_t s = 0; s < count; ++s) {
        const double room = static_cast<double>(count - 1 - s) * distance;
        const double middle = (y(m_edges[s].back()) + y(m_edges[s + 1].back())) / 2;
        heights.push_back(std::max(std::min(middle, lowest), top + room));
        lowest = heights.back() - distance;
    }
    return heights;
}

} // namespace chart
