// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/IntegerEditor.h"

#include "ui/features/editors/LongSpinBox.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QSlider>

#include <utility>

IntegerEditor::IntegerEditor(FeatureInfo info, QWidget* parent)
    : DelegateWidget(std::move(info), parent),
      m_grid(valueAs<std::int64_t>(this->info().minimum),
             valueAs<std::int64_t>(this->info().maximum),
             valueAs<std::int64_t>(this->info().increment)),
      m_spin(add(new LongSpinBox(m_grid))), m_slider(addSlider(new QSlider(Qt::Horizontal))) {
    m_slider->setMinimumWidth(sliderWidth);
    m_slider->setRange(m_grid.sliderMinimum(), m_grid.sliderMaximum());
    m_slider->setSingleStep(m_grid.sliderStep());
    m_slider->setPageStep(m_grid.sliderPage());
    m_slider->setEnabled(m_grid.isKnown());
    connect(m_slider, &QSlider::valueChanged, this, &DelegateWidget::onSliderMoved);
    m_spin->setFixedHeight(partHeight());
    connect(m_spin, &LongSpinBox::valueStepped, this, &IntegerEditor::moveSlider);
    connect(m_spin, &LongSpinBox::editingFinished, this, &DelegateWidget::onEditingFinished);
    setHint(DelegateWidget::tr("A whole number from %1 to %2")
                .arg(m_grid.minimum())
                .arg(m_grid.maximum()),
            *m_spin->findChild<QLineEdit*>());
    addUnit();
}

IntegerEditor::~IntegerEditor() = default;

std::optional<FeatureValue> IntegerEditor::input() const {
    return m_spin->isComplete() ? std::optional<FeatureValue>(m_spin->value()) : std::nullopt;
}

FeatureValue IntegerEditor::show(const FeatureValue& value) {
    m_spin->setValue(valueAs<std::int64_t>(value));
    moveSlider();
    return value;
}

void IntegerEditor::tidy() {
    m_spin->setValue(m_spin->value());
    moveSlider();
}

void IntegerEditor::onSliderMoved(int position) {
    const std::int64_t value = m_grid.valueAt(position);
    m_spin->setValue(value);
    // While it is dragged the handle stays under the mouse, even between two values.
    if (!m_slider->isSliderDown())
        moveSlider();
    emit sliderValueChanged(value);
}

void IntegerEditor::moveSlider() {
    const QSignalBlocker blocker(m_slider);
    m_slider->setValue(m_grid.positionOf(m_spin->value()));
}
