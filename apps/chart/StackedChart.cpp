// SPDX-License-Identifier: BSD-3-Clause
#include "chart/StackedChart.h"

#include <QLatin1String>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>

namespace chart {

namespace {

/// Times and rates beyond these are no measurement.
constexpr double mostSeconds = 1e11;
constexpr double mostMegabytesPerSecond = 1e12;

double rateAt(const Series& series, std::size_t index) {
    if (index >= series.megabytesPerSecond.size())
        return 0;
    const double rate = series.megabytesPerSecond[index];
    return std::isfinite(rate) ? std::clamp(rate, 0.0, mostMegabytesPerSecond) : 0;
}

double mean(const std::vector<double>& values) {
    if (values.empty())
        return 0;
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

/// The means of groups of \p size values.
std::vector<double> meansOf(const std::vector<double>& values, std::size_t size) {
    std::vector<double> means;
    for (std::size_t i = 0; i < values.size(); i += size) {
        const std::size_t end = std::min(i + size, values.size());
        means.push_back(mean({values.begin() + static_cast<std::ptrdiff_t>(i),
                              values.begin() + static_cast<std::ptrdiff_t>(end)}));
    }
    return means;
}

} // namespace

StackedChart validated(const StackedChart& chart) {
    StackedChart result{chart.title, {}, {}, {}};
    const double link = chart.linkMegabytesPerSecond.value_or(0);
    if (std::isfinite(link) && link > 0)
        result.linkMegabytesPerSecond = std::min(link, mostMegabytesPerSecond);
    for (const Series& series : chart.series)
        result.series.push_back({series.name, {}, series.lostAtSeconds, series.color});
    for (std::size_t i = 0; i < chart.seconds.size(); ++i) {
        const double time = chart.seconds[i];
        const bool isAscending = result.seconds.empty() || time > result.seconds.back();
        if (!(std::abs(time) <= mostSeconds) || !isAscending)
            continue;
        result.seconds.push_back(time);
        for (std::size_t s = 0; s < chart.series.size(); ++s)
            result.series[s].megabytesPerSecond.push_back(rateAt(chart.series[s], i));
    }
    return result;
}

double meanRate(const Series& series) {
    return mean(series.megabytesPerSecond);
}

QString seriesColor(int index) {
    // Okabe and Ito, "Color Universal Design" (2008), which people with any common colour blindness
    // tell apart; its black, which is for text here, is replaced by a grey.
    static constexpr const char* colors[] = {"#0072b2", "#e69f00", "#009e73", "#cc79a7",
                                             "#56b4e9", "#d55e00", "#f0e442", "#999999"};
    return QLatin1String(colors[static_cast<unsigned>(index) % std::size(colors)]);
}

StackedChart averaged(const StackedChart& chart, std::size_t mostTimes) {
    StackedChart result = validated(chart);
    const std::size_t size = (result.seconds.size() + mostTimes - 1) / mostTimes;
    if (size > 1) {
        result.seconds = meansOf(result.seconds, size);
        for (Series& series : result.series)
            series.megabytesPerSecond = meansOf(series.megabytesPerSecond, size);
    }
    return result;
}

} // namespace chart
