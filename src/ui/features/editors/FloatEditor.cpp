// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/FloatEditor.h"

#include "features/FeatureText.h"
#include "ui/features/editors/DoubleValidator.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <qwt_scale_engine.h>
#include <qwt_slider.h>

#include <limits>
#include <utility>

namespace {

constexpr int lineWidth = 60;
/// Leaves room for the slider in a column of usual width.
constexpr int digits = 16;
constexpr QSize handleSize{12, 18};

constexpr TextForm number{
    [](const FeatureValue& v) { return toDoubleText(valueAs<double>(v)); },
    [](const QString& text) { return std::optional<FeatureValue>(fromDoubleText(text)); },
    &DelegateWidget::onEditingFinishedDouble,
};

bool isLogarithmic(const FeatureInfo& info) {
    return info.name == "ExposureTime" || info.name == "ExposureTimeAbs" ||
           info.representation == "Logarithmic";
}

} // namespace

FloatEditor::FloatEditor(FeatureInfo info, QWidget* parent)
    : TextEditor(std::move(info), number, parent),
      m_scale(valueAs<double>(this->info().minimum), valueAs<double>(this->info().maximum),
              valueAs<double>(this->info().increment), isLogarithmic(this->info())),
      m_slider(addSlider(new QwtSlider(Qt::Horizontal))) {
    setUpLine();
    setUpSlider();
    addUnit();
}

FloatEditor::~FloatEditor() = default;

void FloatEditor::setUpLine() {
    const double minimum = valueAs<double>(info().minimum);
    const double maximum = valueAs<double>(info().maximum);
    // Without a range that could be read, or that makes sense, the camera decides.
    const bool isKnown = minimum <= maximum && (minimum != 0 || maximum != 0);
    constexpr double unlimited = std::numeric_limits<double>::max();
    line().setValidator(isKnown ? new DoubleValidator(minimum, maximum, this)
                                : new DoubleValidator(-unlimited, unlimited, this));
    setHint(isKnown
                ? DelegateWidget::tr("A number from %1 to %2, with up to 10 decimals after a point")
                      .arg(toDoubleText(minimum), toDoubleText(maximum))
                : DelegateWidget::tr("A number, with up to 10 decimals after a point"),
            line());
    line().setMinimumWidth(lineWidth);
    line().setMaximumWidth(line().fontMetrics().averageCharWidth() * digits);
    line().setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void FloatEditor::setUpSlider() {
    m_slider->setScalePosition(QwtSlider::NoScale);
    // A groove, as other sliders have.
    m_slider->setTrough(false);
    m_slider->setGroove(true);
    m_slider->setHandleSize(handleSize);
    m_slider->setMinimumWidth(sliderWidth);
    m_slider->setEnabled(m_scale.isUsable());
    if (!m_scale.isUsable())
        return;
    if (m_scale.isLogarithmic())
        m_slider->setScaleEngine(new QwtLogScaleEngine);
    m_slider->setScale(m_scale.lower(), m_scale.upper());
    m_slider->setTotalSteps(m_scale.steps());
    m_slider->setSingleSteps(1);
    m_slider->setPageSteps(m_scale.pageSteps());
    connect(m_slider, &QwtSlider::valueChanged, this, &DelegateWidget::onDoubleSliderMoved);
}

void FloatEditor::onDoubleSliderMoved(double value) {
    TextEditor::show(m_scale.valueAt(value));
}

FeatureValue FloatEditor::show(const FeatureValue& value) {
    TextEditor::show(value);
    if (m_scale.isUsable()) {
        const QSignalBlocker blocker(m_slider);
        m_slider->setValue(valueAs<double>(value));
    }
    return value;
}
