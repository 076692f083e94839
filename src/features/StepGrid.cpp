// SPDX-License-Identifier: BSD-3-Clause
#include "features/StepGrid.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Int = std::numeric_limits<int>;
using Int64 = std::numeric_limits<std::int64_t>;

/// Most positions of a slider that shows shares of the range: more than it has pixels.
constexpr std::uint64_t mostShares = 1000;
constexpr std::int64_t stepsOfPage = 5;

} // namespace

StepGrid::StepGrid(std::int64_t minimum, std::int64_t maximum, std::int64_t increment)
    : m_known(minimum <= maximum && (minimum != 0 || maximum != 0 || increment != 0)),
      m_minimum(minimum), m_maximum(maximum),
      m_increment(static_cast<std::uint64_t>(std::max(increment, std::int64_t{1}))) {
    if (!m_known) {
        m_minimum = Int64::min();
        m_maximum = Int64::max();
        m_increment = 1;
    }
    m_lastOffset = offsetOf(m_maximum) / m_increment * m_increment;
}

std::uint64_t StepGrid::offsetOf(std::int64_t value) const {
    return static_cast<std::uint64_t>(std::clamp(value, m_minimum, m_maximum)) -
           static_cast<std::uint64_t>(m_minimum);
}

std::int64_t StepGrid::at(std::uint64_t offset) const {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(m_minimum) + offset);
}

std::int64_t StepGrid::atOrBelow(std::int64_t value) const {
    return at(offsetOf(value) / m_increment * m_increment);
}

std::int64_t StepGrid::atOrAbove(std::int64_t value) const {
    const std::int64_t below = atOrBelow(value);
    return below < value ? stepped(below, 1) : below;
}

std::int64_t StepGrid::nearest(std::int64_t value) const {
    const std::uint64_t offset = offsetOf(value);
    const std::uint64_t below = offset / m_increment * m_increment;
    const std::uint64_t rest = offset - below;
    const bool isAboveNearer = rest >= m_increment - rest && below < m_lastOffset;
    return at(isAboveNearer ? below + m_increment : below);
}

std::int64_t StepGrid::stepped(std::int64_t value, int steps) const {
    const std::uint64_t offset = offsetOf(value);
    const std::uint64_t index = offset / m_increment;
    if (steps >= 0) {
        const std::uint64_t up = m_lastOffset / m_increment - index;
        return at((index + std::min(up, static_cast<std::uint64_t>(steps))) * m_increment);
    }
    // Between two values of the grid the first step down goes to the lower one.
    const std::uint64_t from = offset % m_increment == 0 ? index : index + 1;
    const auto down = static_cast<std::uint64_t>(-std::int64_t{steps});
    return at((from - std::min(down, from)) * m_increment);
}

bool StepGrid::fitsSlider() const {
    return m_minimum >= Int::min() && m_maximum <= Int::max();
}

int StepGrid::sliderMinimum() const {
    return fitsSlider() ? static_cast<int>(m_minimum) : 0;
}

int StepGrid::sliderMaximum() const {
    return static_cast<int>(
        fitsSlider() ? m_maximum : std::int64_t(std::min(m_lastOffset / m_increment, mostShares)));
}

int StepGrid::sliderStep() const {
    return fitsSlider() ? static_cast<int>(std::min(m_increment, std::uint64_t{Int::max()})) : 1;
}

int StepGrid::sliderPage() const {
    return static_cast<int>(std::min(sliderStep() * stepsOfPage, std::int64_t{Int::max()}));
}

int StepGrid::positionOf(std::int64_t value) const {
    if (fitsSlider())
        return static_cast<int>(std::clamp(value, m_minimum, m_maximum));
    if (m_lastOffset == 0)
        return 0;
    const std::uint64_t offset = std::min(offsetOf(value), m_lastOffset);
    const double share = static_cast<double>(offset) / static_cast<double>(m_lastOffset);
    return static_cast<int>(std::lround(share * sliderMaximum()));
}

std::int64_t StepGrid::valueAt(int position) const {
    if (fitsSlider())
        return nearest(position);
    // Not computed: as a double, the end may be rounded to more than 64 bits.
    if (position >= sliderMaximum())
        return last();
    const double share = static_cast<double>(position) / sliderMaximum();
    return nearest(at(static_cast<std::uint64_t>(share * static_cast<double>(m_lastOffset))));
}
