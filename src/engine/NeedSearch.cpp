// SPDX-License-Identifier: BSD-3-Clause
#include "engine/NeedSearch.h"

#include "engine/Truncation.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// A rate that is lower than the target by less counts as kept: cameras round what they report.
constexpr double rateTolerance = 0.0015;
/// Width of the interval, as a fraction of the limit, at which the search ends. Above the
/// tolerance: a limit that is lower by so much must miss the target.
constexpr double resolution = 0.003;
constexpr double growth = 10;
/// At least the distance of two limits, as a fraction, that tell how the rate grows between them.
constexpr double leastDistance = 0.01;
constexpr int mostTries = 10;

std::int64_t scaled(std::int64_t limit, double factor) {
    return truncated(static_cast<double>(limit) * factor);
}

} // namespace

NeedSearch::NeedSearch(std::function<double(std::int64_t)> tryOut, double target,
                       const StepGrid& range)
    : m_tryOut(std::move(tryOut)), m_target(target), m_range(range), m_reached(range.last()),
      m_distance(resolution) {}

std::int64_t NeedSearch::run(std::int64_t estimated) {
    std::int64_t candidate = m_range.atOrAbove(estimated);
    for (int tries = 0; tries < mostTries && !isFound(); ++tries) {
        // The end of the interval is known.
        if (candidate >= m_reached)
            candidate = m_range.stepped(m_reached, -1);
        if (m_missed && candidate <= m_missed->limit)
            candidate = middle();
        if (tryOut(candidate)) {
            candidate = belowReached();
            m_distance *= growth;
        } else {
            candidate = estimateFromMissed();
            m_distance = resolution;
        }
    }
    return m_reached;
}

bool NeedSearch::isFound() const {
    if (!m_missed)
        return m_reached <= m_range.minimum();
    const std::int64_t width = m_reached - m_missed->limit;
    return width <= m_range.increment() || width <= scaled(m_reached, resolution) + 1;
}

bool NeedSearch::tryOut(std::int64_t limit) {
    const double rate = m_tryOut(limit);
    if (rate >= m_target * (1 - rateTolerance)) {
        m_reached = limit;
        return true;
    }
    m_missedBefore = std::exchange(m_missed, Missed{limit, rate});
    return false;
}

std::int64_t NeedSearch::belowReached() const {
    return m_distance < 1 ? m_range.atOrBelow(scaled(m_reached, 1 - m_distance)) : middle();
}

std::int64_t NeedSearch::estimateFromMissed() const {
    if (!(m_missed->rate > 0))
        return middle();
    const auto limit = static_cast<double>(m_missed->limit);
    double perFrame = limit / m_missed->rate;
    if (m_missedBefore) {
        const double distance = limit - static_cast<double>(m_missedBefore->limit);
        const double gained = m_missed->rate - m_missedBefore->rate;
        if (distance > limit * leastDistance && gained > 0)
            perFrame = distance / gained;
    }
    return m_range.atOrAbove(truncated(limit + (m_target - m_missed->rate) * perFrame));
}

std::int64_t NeedSearch::middle() const {
    const std::int64_t low = m_missed ? m_missed->limit : m_range.minimum();
    // Geometric: ranges reach from kilobytes to gigabytes.
    const double mean = std::sqrt(static_cast<double>(std::max<std::int64_t>(low, 1)) *
                                  static_cast<double>(m_reached));
    const std::int64_t step = m_range.atOrBelow(truncated(mean));
    return m_missed && step <= low ? m_range.stepped(low, 1) : step;
}
