// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/FloatScale.h"

#include "ui/features/editors/DoubleValidator.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr unsigned int mostSteps = 1000;
/// Where a logarithmic scale for a range from 0 begins, as a share of the maximum.
constexpr double lowestShare = 1e-6;
/// Beyond, Qwt cannot draw a logarithmic scale.
constexpr double mostLogarithmic = 1e100;

} // namespace

FloatScale::FloatScale(double minimum, double maximum, double increment, bool logarithmic)
    : m_minimum(minimum), m_maximum(maximum), m_increment(std::isfinite(increment) ? increment : 0),
      m_lower(minimum), m_steps(mostSteps),
      m_usable(maximum > minimum && std::isfinite(maximum - minimum)),
      m_logarithmic(logarithmic && minimum >= 0 && maximum > 0 && maximum < mostLogarithmic) {
    if (m_logarithmic && minimum == 0)
        m_lower = maximum * lowestShare;
    const double increments = (maximum - minimum) / m_increment;
    if (m_usable && !m_logarithmic && m_increment > 0 && increments < mostSteps)
        m_steps = std::max(1U, static_cast<unsigned int>(std::lround(increments)));
}

unsigned int FloatScale::pageSteps() const {
    return std::max(5U, m_steps / 20);
}

double FloatScale::valueAt(double position) const {
    if (position <= m_lower)
        return m_minimum;
    if (position >= m_maximum)
        return m_maximum;
    return std::clamp(rounded(position), m_minimum, m_maximum);
}

double FloatScale::rounded(double value) const {
    if (m_increment > 0)
        return m_minimum + std::round((value - m_minimum) / m_increment) * m_increment;
    const double width =
        m_logarithmic ? value * std::log(m_maximum / m_lower) : m_maximum - m_minimum;
    const double decimals = std::ceil(-std::log10(width / mostSteps));
    const double factor =
        std::pow(10.0, std::clamp(decimals, 0.0, 1.0 * DoubleValidator::mostDecimals));
    return std::round(value * factor) / factor;
}
