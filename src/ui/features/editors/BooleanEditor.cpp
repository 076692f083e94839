// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/BooleanEditor.h"

#include <QCheckBox>

#include <utility>

BooleanEditor::BooleanEditor(FeatureInfo info, QWidget* parent)
    : DelegateWidget(std::move(info), parent), m_box(add(new QCheckBox)) {
    browseSilently();
    connect(m_box, &QCheckBox::clicked, this, &DelegateWidget::saveEditorData);
}

BooleanEditor::~BooleanEditor() = default;

std::optional<FeatureValue> BooleanEditor::input() const {
    return m_box->isChecked();
}

FeatureValue BooleanEditor::show(const FeatureValue& value) {
    m_box->setChecked(valueAs<bool>(value));
    return m_box->isChecked();
}
