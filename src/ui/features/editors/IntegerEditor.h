// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/StepGrid.h"
#include "ui/features/editors/DelegateWidget.h"

class LongSpinBox;
class QSlider;

/// Editor of an integer: a slider and a spin box, kept in step. Bound to the GUI thread.
class IntegerEditor : public DelegateWidget {
public:
    IntegerEditor(FeatureInfo info, QWidget* parent);
    ~IntegerEditor() override;

    std::optional<FeatureValue> input() const override;
    void onSliderMoved(int position) override;

protected:
    FeatureValue show(const FeatureValue& value) override;
    void tidy() override;

private:
    void moveSlider();

    const StepGrid m_grid;
    LongSpinBox* m_spin;
    QSlider* m_slider;
};
