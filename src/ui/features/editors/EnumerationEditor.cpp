// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/EnumerationEditor.h"

#include <QComboBox>

#include <utility>

EnumerationEditor::EnumerationEditor(FeatureInfo info, QWidget* parent)
    : DelegateWidget(std::move(info), parent), m_box(add(new QComboBox)) {
    browseSilently();
    row().setSpacing(0);
    m_box->setFixedHeight(partHeight());
    // As wide as the column: a longest entry may not fit, and measuring all entries takes long.
    m_box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    for (const FeatureValue& entry : this->info().availableValues)
        m_box->addItem(QString::fromStdString(valueAs<std::string>(entry)));
    connect(m_box, QOverload<int>::of(&QComboBox::activated), this,
            &DelegateWidget::saveEditorData);
}

EnumerationEditor::~EnumerationEditor() = default;

std::optional<FeatureValue> EnumerationEditor::input() const {
    // The feature may have an entry that cannot be chosen now, and is not in the list.
    return m_box->currentIndex() < 0 ? value() : m_box->currentText().toStdString();
}

FeatureValue EnumerationEditor::show(const FeatureValue& value) {
    m_box->setCurrentIndex(m_box->findText(QString::fromStdString(valueAs<std::string>(value))));
    return value;
}
