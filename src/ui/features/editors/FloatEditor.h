// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ui/features/editors/FloatScale.h"
#include "ui/features/editors/TextEditor.h"

class QwtSlider;

/// Editor of a floating-point number: a slider and a line, kept in step. Bound to the GUI thread.
class FloatEditor : public TextEditor {
public:
    FloatEditor(FeatureInfo info, QWidget* parent);
    ~FloatEditor() override;

    void onDoubleSliderMoved(double value) override;

protected:
    FeatureValue show(const FeatureValue& value) override;

private:
    void setUpLine();
    void setUpSlider();

    const FloatScale m_scale;
    QwtSlider* m_slider;
};
