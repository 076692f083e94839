// SPDX-License-Identifier: BSD-3-Clause
#include "chart/AxisScale.h"

#include <algorithm>
#include <cmath>

namespace chart {

namespace {

/// Part of a step by which a mark may miss the range through rounding.
constexpr double tolerance = 1e-6;

double roundStep(double least) {
    const double power = std::pow(10, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least * (1 - tolerance))
            return factor * power;
    }
    return 10 * power;
}

} // namespace

AxisScale::AxisScale(double least, double most, int mostSteps)
    : m_least(least), m_most(most), m_step(roundStep((most - least) / mostSteps)) {}

std::vector<double> AxisScale::marks() const {
    std::vector<double> marks;
    const double first = std::ceil(m_least / m_step - tolerance);
    const double last = std::floor(m_most / m_step + tolerance);
    for (double multiple = first; multiple <= last; ++multiple)
        marks.push_back(multiple * m_step);
    return marks;
}

QString AxisScale::text(double mark) const {
    const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(m_step) + tolerance)));
    // Adding 0 turns -0 into 0.
    return QString::number(mark + 0.0, 'f', decimals);
}

double AxisScale::roundedUp(double value) const {
    return std::ceil(value / m_step - tolerance) * m_step;
}

} // namespace chart
