// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ui/features/editors/DelegateWidget.h"

class QCheckBox;

/// Editor of a boolean feature: a check box. Bound to the GUI thread.
class BooleanEditor : public DelegateWidget {
public:
    BooleanEditor(FeatureInfo info, QWidget* parent);
    ~BooleanEditor() override;

    std::optional<FeatureValue> input() const override;

protected:
    FeatureValue show(const FeatureValue& value) override;

private:
    QCheckBox* m_box;
};
