// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/DoubleValidator.h"

#include "features/FeatureText.h"

#include <QLocale>

DoubleValidator::DoubleValidator(double minimum, double maximum, QObject* parent)
    : QDoubleValidator(minimum, maximum, mostDecimals, parent) {
    QLocale locale = QLocale::c();
    locale.setNumberOptions(QLocale::RejectGroupSeparator);
    setLocale(locale);
    setNotation(StandardNotation);
}

DoubleValidator::~DoubleValidator() = default;

QValidator::State DoubleValidator::validate(QString& input, int& position) const {
    const State state = QDoubleValidator::validate(input, position);
    const auto value = fromDoubleText(input);
    if (state != Intermediate || !value)
        return state;
    const bool isBeyond = (*value > top() && *value > 0) || (*value < bottom() && *value < 0);
    return isBeyond ? Invalid : Intermediate;
}
