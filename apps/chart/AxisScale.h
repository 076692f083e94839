// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>

#include <vector>

namespace chart {

/// Round numbers along an axis. Reentrant.
class AxisScale {
public:
    /// \p least is below \p most, both are finite. \p mostSteps is at least 1.
    AxisScale(double least, double most, int mostSteps);

    /// 1, 2 or 5 times a power of ten, so that the range has at most so many whole steps.
    double step() const { return m_step; }
    /// The multiples of the step in the range.
    std::vector<double> marks() const;
    /// \p mark with as many decimals as the step needs.
    QString text(double mark) const;
    /// The first multiple of the step that is not below \p value.
    double roundedUp(double value) const;

private:
    double m_least;
    double m_most;
    double m_step;
};

} // namespace chart
