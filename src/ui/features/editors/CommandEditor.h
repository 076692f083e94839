// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ui/features/editors/DelegateWidget.h"

class QPushButton;

/// Editor of a command: a button, whose value is true once it was pressed. Bound to the GUI thread.
class CommandEditor : public DelegateWidget {
public:
    CommandEditor(FeatureInfo info, QWidget* parent);
    ~CommandEditor() override;

    std::optional<FeatureValue> input() const override;

protected:
    FeatureValue show(const FeatureValue& value) override;
    /// Presses the button.
    void confirm() override;

private:
    QPushButton* m_button;
};
