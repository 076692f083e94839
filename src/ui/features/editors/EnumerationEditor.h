// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ui/features/editors/DelegateWidget.h"

class QComboBox;

/// Editor of an enumeration: a list of the entries that can be chosen now. Bound to the GUI thread.
class EnumerationEditor : public DelegateWidget {
public:
    EnumerationEditor(FeatureInfo info, QWidget* parent);
    ~EnumerationEditor() override;

    std::optional<FeatureValue> input() const override;

protected:
    FeatureValue show(const FeatureValue& value) override;

private:
    QComboBox* m_box;
};
