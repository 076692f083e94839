// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/ThroughputHistory.h"

#include <QSet>

#include <algorithm>

namespace viewer {

namespace {

/// Intervals of which a rate is the average.
constexpr std::size_t averagedIntervals = 2;
constexpr double bytesPerMegabyte = 1e6;

} // namespace

void ThroughputHistory::add(double seconds, const std::vector<CountedCamera>& cameras) {
    QSet<QString> ids;
    QSet<QString> interfaces;
    for (const CountedCamera& counted : cameras) {
        Camera& camera = known(counted);
        ids.insert(counted.id);
        StreamCounters now = counted.counters;
        StreamCounters before = camera.counters.value_or(now);
        // Bytes fall only when a camera counts anew; lost frames also when one comes late.
        if (now.bytes < before.bytes)
            before = {};
        now.badFrames = std::max(now.badFrames, before.badFrames);
        const std::uint64_t bytes = now.bytes - before.bytes;
        camera.counters = now;
        camera.total.bytes += bytes;
        camera.total.badFrames += now.badFrames - before.badFrames;
        if (bytes > 0)
            interfaces.insert(counted.interfaceName);
    }

    Sample sample;
    sample.seconds = seconds;
    if (interfaces.size() == 1)
        sample.interfaceName = *interfaces.constBegin();
    else if (interfaces.isEmpty() && !m_samples.empty())
        sample.interfaceName = m_samples.back().interfaceName;
    for (Camera& camera : m_cameras) {
        if (!ids.contains(camera.id))
            camera.counters.reset();
        sample.totals.push_back(camera.total);
    }
    m_samples.push_back(std::move(sample));
    // The rate of the first sample in the window needs those before it.
    while (firstInWindow() > averagedIntervals)
        m_samples.pop_front();
}

ThroughputHistory::Camera& ThroughputHistory::known(const CountedCamera& camera) {
    const auto found = std::find_if(m_cameras.begin(), m_cameras.end(),
                                    [&](const Camera& each) { return each.id == camera.id; });
    Camera& entry = found != m_cameras.end() ? *found : m_cameras.emplace_back();
    entry.id = camera.id;
    entry.name = camera.name;
    return entry;
}

std::size_t ThroughputHistory::firstInWindow() const {
    const auto found =
        std::find_if(m_samples.begin(), m_samples.end(), [this](const Sample& sample) {
            return sample.seconds >= m_samples.back().seconds - windowSeconds;
        });
    return static_cast<std::size_t>(found - m_samples.begin());
}

StreamCounters ThroughputHistory::totalOf(std::size_t sample, std::size_t camera) const {
    const std::vector<StreamCounters>& totals = m_samples[sample].totals;
    return camera < totals.size() ? totals[camera] : StreamCounters();
}

std::vector<double> ThroughputHistory::seconds() const {
    std::vector<double> times;
    for (std::size_t i = firstInWindow(); i < m_samples.size(); ++i)
        times.push_back(m_samples[i].seconds);
    return times;
}

std::vector<QString> ThroughputHistory::interfaceNames() const {
    std::vector<QString> names;
    for (std::size_t i = firstInWindow(); i < m_samples.size(); ++i)
        names.push_back(m_samples[i].interfaceName);
    return names;
}

ThroughputHistory::Series ThroughputHistory::seriesOf(std::size_t camera) const {
    Series series;
    series.name = m_cameras[camera].name;
    for (std::size_t i = firstInWindow(); i < m_samples.size(); ++i) {
        const std::size_t from = i - std::min(i, averagedIntervals);
        const double duration = m_samples[i].seconds - m_samples[from].seconds;
        const auto bytes =
            static_cast<double>(totalOf(i, camera).bytes - totalOf(from, camera).bytes);
        series.megabytesPerSecond.push_back(duration > 0.0 ? bytes / duration / bytesPerMegabyte
                                                           : 0.0);
        const std::size_t before = i - std::min<std::size_t>(i, 1);
        series.badFrames.push_back(totalOf(i, camera).badFrames -
                                   totalOf(before, camera).badFrames);
    }
    return series;
}

std::vector<ThroughputHistory::Series> ThroughputHistory::series() const {
    std::vector<Series> result;
    for (std::size_t camera = 0; camera < m_cameras.size(); ++camera)
        result.push_back(seriesOf(camera));
    return result;
}

bool ThroughputHistory::Series::isActive() const {
    const auto isMoved = [](auto value) {
        return value > 0;
    };
    return std::any_of(megabytesPerSecond.begin(), megabytesPerSecond.end(), isMoved) ||
           std::any_of(badFrames.begin(), badFrames.end(), isMoved);
}

} // namespace viewer
