// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/LongSpinBox.h"

#include <QLineEdit>
#include <QRegularExpression>

#include <algorithm>

namespace {
constexpr int mostDigits = 8;
} // namespace

LongSpinBox::LongSpinBox(const StepGrid& grid, QWidget* parent)
    : QAbstractSpinBox(parent), m_grid(grid) {
    setKeyboardTracking(false);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

LongSpinBox::~LongSpinBox() = default;

qint64 LongSpinBox::value() const {
    // An untouched value is kept, even one that is not on the grid.
    if (text() == QString::number(m_value))
        return m_value;
    bool isNumber = false;
    const qint64 typed = text().toLongLong(&isNumber);
    const bool isInRange = isNumber && typed >= m_grid.minimum() && typed <= m_grid.maximum();
    return isInRange ? m_grid.nearest(typed) : m_value;
}

bool LongSpinBox::isComplete() const {
    return text() == QString::number(m_value) || hasAcceptableInput();
}

void LongSpinBox::setValue(qint64 value) {
    m_value = value;
    lineEdit()->setText(QString::number(value));
    update();
}

void LongSpinBox::stepBy(int steps) {
    setValue(m_grid.stepped(value(), steps));
    emit valueStepped(m_value);
}

QValidator::State LongSpinBox::validate(QString& input, int& /*position*/) const {
    static const QRegularExpression digits(QStringLiteral("^-?[0-9]*$"));
    if (!digits.match(input).hasMatch() ||
        (input.startsWith(QLatin1Char('-')) && m_grid.minimum() >= 0))
        return QValidator::Invalid;
    if (input.isEmpty() || input == QLatin1String("-"))
        return QValidator::Intermediate;
    bool isNumber = false;
    const qint64 value = input.toLongLong(&isNumber);
    // More digits lead further away from zero.
    if (!isNumber || (value > m_grid.maximum() && value >= 0) ||
        (value < m_grid.minimum() && value < 0))
        return QValidator::Invalid;
    return value >= m_grid.minimum() && value <= m_grid.maximum() ? QValidator::Acceptable
                                                                  : QValidator::Intermediate;
}

void LongSpinBox::focusInEvent(QFocusEvent* event) {
    QAbstractSpinBox::focusInEvent(event);
    selectAll();
}

QAbstractSpinBox::StepEnabled LongSpinBox::stepEnabled() const {
    const qint64 current = value();
    StepEnabled enabled = StepNone;
    enabled.setFlag(StepUpEnabled, current < m_grid.last());
    enabled.setFlag(StepDownEnabled, current > m_grid.minimum());
    return enabled;
}

QSize LongSpinBox::sizeHint() const {
    QSize size = QAbstractSpinBox::sizeHint();
    size.rwidth() += textWidth();
    return size;
}

QSize LongSpinBox::minimumSizeHint() const {
    // In a narrow place a long number is scrolled.
    const int most = fontMetrics().averageCharWidth() * mostDigits;
    QSize size = QAbstractSpinBox::minimumSizeHint();
    size.rwidth() += std::min(textWidth(), most);
    return size;
}

int LongSpinBox::textWidth() const {
    const auto widthOf = [this](qint64 value) {
        return fontMetrics().horizontalAdvance(QString::number(value));
    };
    return std::max(widthOf(m_grid.minimum()), widthOf(m_grid.maximum()));
}
