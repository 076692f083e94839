// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CapacitySearch.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// A step with a loss that carried more than this share is doubtful: a load that is too high by
/// half of the resolution loses more.
constexpr double doubtfulShare = 0.99;
/// The steps up to a loss, as fractions. The first is below the resolution, so that one step in
/// each direction can end the search. The others are for a link that carries more than a loss told:
/// then so few steps are left that the interval must be found quickly, to be halved.
constexpr std::array<double, 5> strides{0.018, 0.12, 0.3, 0.4, 1};
/// The first try below a loss, relative to what was carried then.
constexpr double firstFall = 0.01;
/// Loads that differ by less are the same.
constexpr double same = 1e-6;

} // namespace

CapacitySearch::CapacitySearch(double least, double most) : m_least(least), m_most(most) {}

std::optional<double> CapacitySearch::next() const {
    if (m_steps >= mostSteps || isPrecise())
        return std::nullopt;
    if (m_doubtful)
        return m_doubtful;
    if (!m_lossy)
        return m_lossless ? std::nullopt : std::optional(m_most);
    if (m_lossless)
        return above();
    return *m_lossy > m_least * (1 + same) ? std::optional(below()) : std::nullopt;
}

double CapacitySearch::above() const {
    const double stride = strides.at(std::min(m_rises, strides.size() - 1));
    const double strided = *m_lossless * (1 + stride);
    return strided < *m_lossy / resolution ? strided : std::sqrt(*m_lossless * *m_lossy);
}

double CapacitySearch::below() const {
    const double carried = m_carried * (1 - firstFall * std::exp2(m_falls));
    return std::clamp(carried, m_least, std::max(m_least, *m_lossy / resolution));
}

void CapacitySearch::note(double load, bool hasLoss, double carriedShare) {
    ++m_steps;
    if (hasLoss && carriedShare > doubtfulShare && !m_doubtful && m_steps < mostSteps) {
        m_doubtful = load;
        return;
    }
    m_doubtful.reset();
    if (hasLoss) {
        m_carried = load * std::clamp(carriedShare, 0.0, 1.0);
        m_falls = m_lossy && !m_lossless ? m_falls + 1 : 0;
        m_lossy = std::min(load, m_lossy.value_or(load));
    } else {
        m_rises = m_lossless ? m_rises + 1 : 0;
        m_lossless = std::max(load, m_lossless.value_or(load));
    }
}

bool CapacitySearch::knows(double load) const {
    if (m_doubtful)
        return false;
    return (m_lossless && load <= *m_lossless * (1 + same)) ||
           (m_lossy && load >= *m_lossy * (1 - same));
}

bool CapacitySearch::isPrecise() const {
    return m_lossless && (!m_lossy ? *m_lossless >= m_most * (1 - same)
                                   : *m_lossy <= *m_lossless * resolution * (1 + same));
}
