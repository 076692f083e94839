// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// The values that the slider of a floating-point feature reaches. Reentrant.
///
/// A slider has as many steps as the range has increments, or 1,000 where there is no increment or
/// where it is smaller than a slider can show. A chosen value has no more decimals than a step.
class FloatScale {
public:
    /// \p increment is 0 or less when there is none. \p logarithmic is ignored for a range that
    /// begins below 0 or ends at or below it.
    FloatScale(double minimum, double maximum, double increment, bool logarithmic);

    /// False for a range without a finite width: such a feature can only be typed.
    bool isUsable() const { return m_usable; }
    bool isLogarithmic() const { return m_logarithmic; }
    /// The slider's ends. A logarithmic scale cannot begin at 0: its lower end is a little above
    /// and stands for 0.
    double lower() const { return m_lower; }
    double upper() const { return m_maximum; }
    unsigned int steps() const { return m_steps; }
    unsigned int pageSteps() const;

    /// Rounded to an increment or to a sensible number of decimals; at the ends exactly these.
    double valueAt(double position) const;

private:
    double rounded(double value) const;

    double m_minimum;
    double m_maximum;
    double m_increment;
    double m_lower;
    unsigned int m_steps;
    bool m_usable;
    bool m_logarithmic;
};
