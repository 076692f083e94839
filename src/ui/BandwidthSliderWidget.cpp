// SPDX-License-Identifier: BSD-3-Clause
#include "ui/BandwidthSliderWidget.h"

#include "engine/CameraHandler.h"
#include "features/FeatureController.h"
#include "logging/Log.h"
#include "ui/Theme.h"
#include "ui_BandwidthSliderWidget.h"

#include <QEvent>
#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr std::int64_t megabyte = 1'000'000;

int toInt(std::int64_t value) {
    return static_cast<int>(
        std::clamp<std::int64_t>(value, 0, std::numeric_limits<std::int32_t>::max()));
}

} // namespace

BandwidthSliderWidget::BandwidthSliderWidget(std::shared_ptr<FeatureController> features,
                                             QWidget* parent)
    : QWidget(parent), m_form(std::make_unique<Ui::BandwidthSliderWidget>()),
      m_features(std::move(features)), m_limit(m_features) {
    m_form->setupUi(this);
    updateLockIcon();
    for (QWidget* control : {static_cast<QWidget*>(m_form->sliderBandwidth),
                             static_cast<QWidget*>(m_form->spinBandwidth)}) {
        control->installEventFilter(this);
    }
    m_sliderStyle = m_form->sliderBandwidth->styleSheet();
    fitSpinBox();
    // Keeps the sliders of all rows aligned.
    QSizePolicy policy = m_form->labelWarning->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_form->labelWarning->setSizePolicy(policy);
    m_form->labelWarning->hide();
    connectWidgets();
    resetToolTips();
}

BandwidthSliderWidget::~BandwidthSliderWidget() = default;

/// Makes room for four digits, whatever the font and the range: the sliders of all rows get the
/// same width.
void BandwidthSliderWidget::fitSpinBox() {
    QSpinBox* spin = m_form->spinBandwidth;
    constexpr int fourDigits = 9999;
    const int maximum = spin->maximum();
    spin->setMaximum(fourDigits);
    spin->setMinimumWidth(std::max(spin->minimumWidth(), spin->sizeHint().width()));
    spin->setMaximum(maximum);
}

void BandwidthSliderWidget::connectWidgets() {
    QSlider* slider = m_form->sliderBandwidth;
    connect(m_form->buttonLock, &QPushButton::toggled, this, &BandwidthSliderWidget::lockChanged);
    connect(slider, &QSlider::valueChanged, this, &BandwidthSliderWidget::onValueChanged);
    connect(slider, &QSlider::sliderReleased, this, &BandwidthSliderWidget::onEditFinished);
    // Write at once, except while dragging (then on release).
    connect(slider, &QSlider::valueChanged, this, [this, slider] {
        if (!slider->isSliderDown())
            onEditFinished();
    });
    const auto spinChanged = qOverload<int>(&QSpinBox::valueChanged);
    connect(m_form->spinBandwidth, spinChanged, this, &BandwidthSliderWidget::onValueChanged);
    connect(m_form->spinBandwidth, spinChanged, this, &BandwidthSliderWidget::onEditFinished);
}

void BandwidthSliderWidget::initialize() {
    if (!m_limit.find()) {
        lockOut();
        return;
    }
    m_limit.switchOn();
    const FeatureInfo info = m_limit.read();
    setRange(info);
    getValue();
    m_limit.warnWhenOff(info.writable);
}

void BandwidthSliderWidget::lockOut() {
    std::string names;
    for (const char* const name : BandwidthLimit::names)
        names += (names.empty() ? " " : ", ") + std::string(name);
    qWarning("%s: Cannot find the feature for bandwidth control:%s are not available",
             m_features->messagePrefix().c_str(), names.c_str());
    changeLock(true);
    m_form->sliderBandwidth->setEnabled(false);
    m_form->spinBandwidth->setEnabled(false);
    m_form->buttonLock->setEnabled(false);
}

/// Whole megabytes that the camera takes: the lower bound is rounded up, the upper one down.
void BandwidthSliderWidget::setRange(const FeatureInfo& feature) {
    const std::int64_t lowest = integerOf(feature.minimum).value_or(0);
    const std::int64_t highest = integerOf(feature.maximum).value_or(0);
    const int minimum = toInt(lowest / megabyte + (lowest % megabyte > 0 ? 1 : 0));
    const int maximum = std::max(minimum, toInt(highest / megabyte));
    const QSignalBlocker sliderBlocker(m_form->sliderBandwidth);
    const QSignalBlocker spinBlocker(m_form->spinBandwidth);
    m_form->spinBandwidth->setRange(minimum, maximum);
    m_form->sliderBandwidth->setRange(minimum, maximum);
}

void BandwidthSliderWidget::showBandwidth(std::int64_t bytesPerSecond) {
    const int before = m_settledValue;
    const bool isKnown = bytesPerSecond > 0;
    {
        const QSignalBlocker sliderBlocker(m_form->sliderBandwidth);
        const QSignalBlocker spinBlocker(m_form->spinBandwidth);
        const double megabytes = static_cast<double>(bytesPerSecond) / 1000.0 / 1000.0;
        m_form->spinBandwidth->setValue(toInt(std::llround(megabytes)));
        m_form->sliderBandwidth->setValue(m_form->spinBandwidth->value());
    }
    showDash(!isKnown);
    m_settledValue = isKnown ? value() : unknown;
    if (m_settledValue != before)
        resetColor();
}

/// The spin box shows its special text in place of its minimum.
void BandwidthSliderWidget::showDash(bool shown) {
    m_form->spinBandwidth->setSpecialValueText(shown ? QStringLiteral("\u2013") : QString());
}

int BandwidthSliderWidget::value() const {
    return m_form->spinBandwidth->value();
}

int BandwidthSliderWidget::getValue() {
    if (!m_limit.name().empty())
        showBandwidth(m_limit.value());
    return value();
}

void BandwidthSliderWidget::onValueChanged() {
    if (sender() == m_form->sliderBandwidth) {
        const QSignalBlocker blocker(m_form->spinBandwidth);
        m_form->spinBandwidth->setValue(m_form->sliderBandwidth->value());
    } else if (sender() == m_form->spinBandwidth) {
        const QSignalBlocker blocker(m_form->sliderBandwidth);
        m_form->sliderBandwidth->setValue(m_form->spinBandwidth->value());
    }
    resetColor();
}

void BandwidthSliderWidget::onEditFinished() {
    if (value() != m_settledValue)
        setValue(value());
}

void BandwidthSliderWidget::setValue(int value) {
    if (m_limit.name().empty())
        return;
    const auto bytes = static_cast<std::uint64_t>(std::max(value, 0) * 1000.0 * 1000.0);
    const auto wanted = static_cast<std::int64_t>(bytes);
    // A megabyte may be less than a step: rounded down, the keys would not move the value up.
    const std::int64_t step = value > m_settledValue ? m_limit.steps().atOrAbove(wanted)
                                                     : m_limit.steps().atOrBelow(wanted);
    // Some cameras count their steps from 0: a multiple of the increment is tried first.
    const bool isMultiple = wanted % m_limit.steps().increment() == 0;
    const auto written = m_limit.write(isMultiple ? wanted : step, step);
    std::int64_t inEffect = m_limit.value();
    if (written && inEffect == 0)
        inEffect = *written;
    if (inEffect != written.value_or(step))
        logWarning(m_features->messagePrefix() + ": SetValue for '" + m_limit.name() +
                   "' was not successfull, new value: " + std::to_string(inEffect));
    showBandwidth(inEffect);
    emit valueChanged(this->value());
}

void BandwidthSliderWidget::changeLock(bool locked) {
    m_form->buttonLock->setChecked(locked);
}

void BandwidthSliderWidget::updateColor(AutosetStatus status) {
    if (status == AutosetStatus::None) {
        resetColor();
        return;
    }
    const bool isEnough =
        status == AutosetStatus::RequestedReached || status == AutosetStatus::ClampedToMaximum;
    setSliderStyle(m_sliderStyle +
                   QStringLiteral("\nQSlider::handle { background-color: %1; }")
                       .arg(isEnough ? QStringLiteral("#009640") : QStringLiteral("#fcc234")));
    m_form->labelWarning->setVisible(!isEnough);
    resetToolTips();
    if (!isEnough)
        setToolTip(tr("Not sufficient bandwidth allocated."));
}

void BandwidthSliderWidget::resetColor() {
    setSliderStyle(m_sliderStyle);
    m_form->labelWarning->hide();
    resetToolTips();
}

void BandwidthSliderWidget::resetToolTips() {
    setToolTip(tr("Min to max bandwidth of the camera"));
    m_form->buttonLock->setToolTip(tr("Lock to exclude camera from Auto Set "));
}

void BandwidthSliderWidget::setSliderStyle(const QString& style) {
    // A new style sheet is costly even when it is the old one.
    if (m_form->sliderBandwidth->styleSheet() != style)
        m_form->sliderBandwidth->setStyleSheet(style);
}

void BandwidthSliderWidget::updateLockIcon() {
    m_form->buttonLock->setIcon(Theme::icon(
        Theme::isDark(palette()) ? QStringLiteral(":/images/images/lock_open_darkmode.png")
                                 : QStringLiteral(":/images/images/lock_open.png"),
        QStringLiteral(":/images/images/lock_closed.png")));
}

bool BandwidthSliderWidget::discardTyping() {
    const QString typed = m_form->spinBandwidth->text();
    m_form->spinBandwidth->setValue(value());
    return m_form->spinBandwidth->text() != typed;
}

/// The wheel changes the control with the focus, else it scrolls the tree. Escape and closing the
/// window discard what was typed and not confirmed; the spin box by itself would take it over.
bool BandwidthSliderWidget::eventFilter(QObject* watched, QEvent* event) {
    const auto* control = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::Wheel && control && !control->hasFocus()) {
        event->ignore();
        return true;
    }
    if (control == m_form->spinBandwidth) {
        // A window that is being closed takes the focus away before it hides its widgets.
        if (event->type() == QEvent::Hide ||
            (event->type() == QEvent::FocusOut && window()->isHidden()))
            discardTyping();
        if (event->type() == QEvent::KeyPress &&
            static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && discardTyping())
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

void BandwidthSliderWidget::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        updateLockIcon();
    QWidget::changeEvent(event);
}
