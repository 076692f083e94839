// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/CommandEditor.h"

#include <QPushButton>

#include <utility>

CommandEditor::CommandEditor(FeatureInfo info, QWidget* parent)
    : DelegateWidget(std::move(info), parent),
      m_button(add(new QPushButton(DelegateWidget::tr("Execute")))) {
    m_button->setCheckable(true);
    m_button->setFixedHeight(partHeight());
    row().addStretch();
    connect(m_button, &QPushButton::clicked, this, &DelegateWidget::saveEditorData);
}

CommandEditor::~CommandEditor() = default;

std::optional<FeatureValue> CommandEditor::input() const {
    return m_button->isChecked();
}

FeatureValue CommandEditor::show(const FeatureValue& /*value*/) {
    m_button->setChecked(false);
    return false;
}

void CommandEditor::confirm() {
    m_button->click();
}
