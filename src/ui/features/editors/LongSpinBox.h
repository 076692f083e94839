// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/StepGrid.h"

#include <QAbstractSpinBox>

/// A spin box for integers of 64 bits, which QSpinBox cannot hold, and for any increment. Bound to
/// the GUI thread.
class LongSpinBox : public QAbstractSpinBox {
    Q_OBJECT

public:
    explicit LongSpinBox(const StepGrid& grid, QWidget* parent = nullptr);
    ~LongSpinBox() override;

    /// The value on the grid that is nearest to what was typed. While that is out of range, the
    /// value before.
    qint64 value() const;
    /// Whether the text is a number of the range, or the value as it was last shown.
    bool isComplete() const;
    /// Shows any value, on the grid or not, without a signal.
    void setValue(qint64 value);

    void stepBy(int steps) override;
    QValidator::State validate(QString& input, int& position) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The user stepped to another value.
    void valueStepped(qint64 value);

protected:
    /// Selects the text: typing replaces it.
    void focusInEvent(QFocusEvent* event) override;
    StepEnabled stepEnabled() const override;

private:
    int textWidth() const;

    StepGrid m_grid;
    qint64 m_value = 0;
};
