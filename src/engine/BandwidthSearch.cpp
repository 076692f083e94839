// SPDX-License-Identifier: BSD-3-Clause
#include "engine/BandwidthSearch.h"

#include "features/FeatureValue.h"
#include "logging/Log.h"

#include <cmath>
#include <string>
#include <utility>

namespace {

/// Relative distance from the target frame rate at which the target counts as missed.
constexpr double tolerance = 0.005;
constexpr int maximumIterations = 10;

} // namespace

BandwidthSearch::BandwidthSearch(std::function<double(std::int64_t)> tryOut, double target)
    : m_tryOut(std::move(tryOut)), m_target(target) {}

std::int64_t BandwidthSearch::run(std::int64_t calculated, std::int64_t maximum) {
    const double frameRate = m_tryOut(calculated);
    m_deviation = deviationOf(frameRate);
    m_step = (maximum - calculated) / 2;
    m_base = calculated;
    logDebug("Calculated bandwidth:" + std::to_string(calculated) +
             " current frame rate: " + toText(frameRate));
    logDebug("Max frameRate: " + toText(m_target) + " max. bandwidth: " + std::to_string(maximum));
    while ((m_direction > 0 || m_deviation < tolerance) && iterate()) {
    }
    logDebug("Autoset completed in " + std::to_string(m_iterations) + " steps.");
    return m_base - 2 * m_direction * m_step;
}

double BandwidthSearch::deviationOf(double frameRate) const {
    return std::abs(m_target - frameRate) / m_target;
}

bool BandwidthSearch::iterate() {
    const std::int64_t candidate = m_base + m_direction * m_step;
    tryCandidate(candidate);
    ++m_iterations;
    if (m_direction > 0 && m_deviation < tolerance) {
        m_direction = -1;
        logDebug("Switch direction");
    }
    m_step /= 2;

    if (m_direction < 0 && m_deviation - m_previousDeviation > tolerance) {
        logDebug("Repeat 1/2 of last step, from bandwidth: " + std::to_string(m_base));
        m_deviation = m_previousDeviation;
        m_repeated = true;
    } else {
        m_previousDeviation = m_deviation;
        m_base = candidate;
        if (m_repeated && m_deviation < tolerance) {
            m_step = 0;
            return false;
        }
    }
    return m_iterations < maximumIterations;
}

void BandwidthSearch::tryCandidate(std::int64_t candidate) {
    const double frameRate = m_tryOut(candidate);
    m_deviation = deviationOf(frameRate);
    logDebug("Deviation: " + toText(static_cast<double>(m_direction) * m_deviation) +
             " Current frameRate: " + toText(frameRate) + "  stepBW: " + std::to_string(m_step) +
             " bandwidth:" + std::to_string(candidate));
}
