// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ui/features/editors/DelegateWidget.h"

/// How a value is shown, typed and read as a text.
struct TextForm {
    QString (*show)(const FeatureValue& value);
    /// Nothing for a text that is no value.
    std::optional<FeatureValue> (*read)(const QString& text);
    /// Runs when the user has finished typing.
    void (DelegateWidget::*finish)() = &DelegateWidget::onEditingFinished;
    /// Regular expression of a complete text; null for any text.
    const char* expression = nullptr;
    /// What can be typed, in English; null where nothing is refused.
    const char* hint = nullptr;
    /// Stands before the text; null for nothing.
    const char* prefix = nullptr;
};

/// Editor of a value as a text. Bound to the GUI thread.
class TextEditor : public DelegateWidget {
public:
    /// \p form must outlive the editor.
    TextEditor(FeatureInfo info, const TextForm& form, QWidget* parent);
    ~TextEditor() override;

    std::optional<FeatureValue> input() const override;

protected:
    QLineEdit& line() const { return *m_line; }
    const FeatureValue& shown() const { return m_shown; }
    FeatureValue show(const FeatureValue& value) override;
    void tidy() override;

private:
    const TextForm& m_form;
    /// The value that was last shown: its text may be rounded.
    FeatureValue m_shown;
    QLineEdit* m_line = nullptr;
};
