// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QDoubleValidator>

/// Lets a floating-point number of a range be typed, with a point in every locale, with up to
/// mostDecimals decimals and without an exponent. Reentrant.
///
/// Unlike its base it refuses what no further digit could bring back into the range.
class DoubleValidator : public QDoubleValidator {
    Q_OBJECT

public:
    /// Of a number that is typed or chosen with a slider.
    static constexpr int mostDecimals = 10;

    DoubleValidator(double minimum, double maximum, QObject* parent = nullptr);
    ~DoubleValidator() override;

    State validate(QString& input, int& position) const override;
};
