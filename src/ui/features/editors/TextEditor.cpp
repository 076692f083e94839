// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/TextEditor.h"

#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>

#include <limits>
#include <utility>

TextEditor::TextEditor(FeatureInfo info, const TextForm& form, QWidget* parent)
    : DelegateWidget(std::move(info), parent), m_form(form) {
    if (form.prefix != nullptr)
        row().addWidget(new QLabel(QString::fromLatin1(form.prefix)));
    m_line = add(new QLineEdit);
    // Otherwise a long value would be cut off, and the cut text be written.
    m_line->setMaxLength(std::numeric_limits<int>::max());
    if (form.expression != nullptr)
        m_line->setValidator(new QRegularExpressionValidator(
            QRegularExpression(QString::fromLatin1(form.expression)), this));
    if (form.hint != nullptr)
        setHint(DelegateWidget::tr(form.hint), *m_line);
    connect(m_line, &QLineEdit::editingFinished, this, form.finish);
}

TextEditor::~TextEditor() = default;

std::optional<FeatureValue> TextEditor::input() const {
    // Untouched: the value itself, whose text may be rounded or not acceptable.
    if (m_line->text() == m_form.show(m_shown))
        return m_shown;
    return m_line->hasAcceptableInput() ? m_form.read(m_line->text()) : std::nullopt;
}

FeatureValue TextEditor::show(const FeatureValue& value) {
    m_shown = value;
    m_line->setText(m_form.show(value));
    return value;
}

void TextEditor::tidy() {
    if (const auto value = input())
        show(*value);
}
