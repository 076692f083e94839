// SPDX-License-Identifier: BSD-3-Clause
#include "ui/BandwidthSliderWidget.h"

#include "engine/CameraHandler.h"
#include "features/FeatureController.h"
#include "logging/Log.h"
#include "ui_BandwidthSliderWidget.h"

#include <QEvent>
#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <variant>

namespace {

constexpr int darkLightness = 100;
constexpr const char* camera = "Camera";

/// A feature that limits a camera's bandwidth, and the one that switches the limit on.
struct BandwidthFeature {
    const char* name;
    const char* enablingName;
    bool isEnabledByText;
};

constexpr std::array bandwidthFeatures{
    BandwidthFeature{"DeviceLinkThroughputLimit", "DeviceLinkThroughputLimitMode", true},
    BandwidthFeature{"StreamBytesPerSecond", "StreamFrameRateConstrain", false}};

const BandwidthFeature* findBandwidthFeature(const FeatureController& features) {
    const auto* const found = std::find_if(
        bandwidthFeatures.begin(), bandwidthFeatures.end(),
        [&](const BandwidthFeature& tried) { return features.hasFeature(camera, tried.name); });
    return found == bandwidthFeatures.end() ? nullptr : found;
}

void switchOn(FeatureController& features, const BandwidthFeature& feature) {
    const std::string name = feature.enablingName;
    const FeatureValue on =
        feature.isEnabledByText ? FeatureValue(std::string("On")) : FeatureValue(true);
    if (features.setFeatureValue(camera, name, on)) {
        logInfo(features.messagePrefix() + ": feature '" + name + "' set to '" + toText(on) + "'.");
    } else {
        qWarning("Cannot set feature '%s' to 'On'.", name.c_str());
    }
}

/// A value of another kind says nothing: it could not be read.
bool isOff(const FeatureValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text != "On";
    }
    const auto* flag = std::get_if<bool>(&value);
    return flag && !*flag;
}

void warnWhenOff(const FeatureController& features, const BandwidthFeature& feature,
                 bool isWritable) {
    const std::string name = feature.enablingName;
    if (!isOff(features.getFeatureValue(camera, name))) {
        return;
    }
    logWarning(isWritable
                   ? "Please enable the Camera-feature '" + name +
                         "' to be able to change the bandwidth settings."
                   : features.messagePrefix() + ": Feature '" + name +
                         "' set to Off, which deactivates the feature '" + feature.name + "'.");
}

/// 0 for what is not an integer, or absent.
std::int64_t toBytes(const FeatureValue& value) {
    const auto* bytes = std::get_if<std::int64_t>(&value);
    return bytes ? *bytes : 0;
}

int toInt(std::int64_t value) {
    return static_cast<int>(
        std::clamp<std::int64_t>(value, 0, std::numeric_limits<std::int32_t>::max()));
}

} // namespace

BandwidthSliderWidget::BandwidthSliderWidget(std::shared_ptr<FeatureController> features,
                                             QWidget* parent)
    : QWidget(parent), m_form(std::make_unique<Ui::BandwidthSliderWidget>()),
      m_features(std::move(features)) {
    m_form->setupUi(this);
    updateLockIcon();
    for (QWidget* control : {static_cast<QWidget*>(m_form->sliderBandwidth),
                             static_cast<QWidget*>(m_form->spinBandwidth)}) {
        control->installEventFilter(this);
    }
    m_sliderStyle = m_form->sliderBandwidth->styleSheet();
    // The sliders of all rows stay below each other.
    QSizePolicy policy = m_form->labelWarning->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_form->labelWarning->setSizePolicy(policy);
    m_form->labelWarning->hide();
    connectWidgets();
    resetToolTips();
}

BandwidthSliderWidget::~BandwidthSliderWidget() = default;

void BandwidthSliderWidget::connectWidgets() {
    QSlider* slider = m_form->sliderBandwidth;
    connect(m_form->buttonLock, &QPushButton::toggled, this, &BandwidthSliderWidget::lockChanged);
    connect(slider, &QSlider::valueChanged, this, &BandwidthSliderWidget::onValueChanged);
    connect(slider, &QSlider::sliderReleased, this, &BandwidthSliderWidget::onEditFinished);
    // Keys, the wheel and clicks beside the handle settle on a value; dragging does not yet.
    connect(slider, &QSlider::valueChanged, this, [this, slider] {
        if (!slider->isSliderDown()) {
            onEditFinished();
        }
    });
    const auto spinChanged = qOverload<int>(&QSpinBox::valueChanged);
    connect(m_form->spinBandwidth, spinChanged, this, &BandwidthSliderWidget::onValueChanged);
    connect(m_form->spinBandwidth, spinChanged, this, &BandwidthSliderWidget::onEditFinished);
}

void BandwidthSliderWidget::initialize() {
    const BandwidthFeature* feature = findBandwidthFeature(*m_features);
    if (!feature) {
        lockOut();
        return;
    }
    m_feature = feature->name;
    const bool canBeSwitched = m_features->hasFeature(camera, feature->enablingName);
    if (canBeSwitched) {
        switchOn(*m_features, *feature);
    }
    const FeatureInfo info = m_features->getFeatureInfo(camera, m_feature);
    setRange(info);
    showBandwidth(toBytes(info.value));
    if (canBeSwitched) {
        warnWhenOff(*m_features, *feature, info.writable);
    }
}

void BandwidthSliderWidget::lockOut() {
    std::string names;
    for (const BandwidthFeature& feature : bandwidthFeatures) {
        names += (names.empty() ? " " : ", ") + std::string(feature.name);
    }
    qWarning("%s: Cannot find the feature for bandwidth control:%s are not available",
             m_features->messagePrefix().c_str(), names.c_str());
    changeLock(true);
    m_form->sliderBandwidth->setEnabled(false);
    m_form->spinBandwidth->setEnabled(false);
    m_form->buttonLock->setEnabled(false);
}

/// Whole megabytes that the camera takes: the lower bound is rounded up, the upper one down.
void BandwidthSliderWidget::setRange(const FeatureInfo& feature) {
    constexpr std::int64_t megabyte = 1'000'000;
    m_grid =
        StepGrid(toBytes(feature.minimum), toBytes(feature.maximum), toBytes(feature.increment));
    const std::int64_t lowest = toBytes(feature.minimum);
    const int minimum = toInt(lowest / megabyte + (lowest % megabyte > 0 ? 1 : 0));
    const int maximum = std::max(minimum, toInt(toBytes(feature.maximum) / megabyte));
    const QSignalBlocker sliderBlocker(m_form->sliderBandwidth);
    const QSignalBlocker spinBlocker(m_form->spinBandwidth);
    m_form->spinBandwidth->setSpecialValueText({});
    m_form->spinBandwidth->setRange(minimum, maximum);
    m_form->sliderBandwidth->setRange(minimum, maximum);
}

void BandwidthSliderWidget::showBandwidth(std::int64_t bandwidth) {
    const int before = value();
    // Without an answer from the camera, what it last had is the best guess.
    const double megabytes = bandwidth > 0 ? static_cast<double>(bandwidth) / 1000.0 / 1000.0
                                           : static_cast<double>(m_settledValue);
    {
        const QSignalBlocker sliderBlocker(m_form->sliderBandwidth);
        const QSignalBlocker spinBlocker(m_form->spinBandwidth);
        m_form->spinBandwidth->setValue(toInt(std::llround(megabytes)));
        m_form->sliderBandwidth->setValue(value());
    }
    m_settledValue = value();
    if (m_settledValue != before) {
        resetColor();
    }
}

int BandwidthSliderWidget::value() const {
    return m_form->spinBandwidth->value();
}

int BandwidthSliderWidget::getValue() {
    if (!m_feature.empty()) {
        showBandwidth(toBytes(m_features->getFeatureValue(camera, m_feature)));
    }
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
    if (value() != m_settledValue) {
        setValue(value());
    }
}

void BandwidthSliderWidget::setValue(int value) {
    if (m_feature.empty()) {
        return;
    }
    const auto bytes = static_cast<std::uint64_t>(std::max(value, 0) * 1000.0 * 1000.0);
    const auto wanted = static_cast<std::int64_t>(bytes);
    // Whole megabytes need not be a step of the camera's.
    const std::int64_t step = m_grid.atOrBelow(wanted);
    const bool isWritten = m_features->setFeatureValue(camera, m_feature, wanted) ||
                           (step != wanted && m_features->setFeatureValue(camera, m_feature, step));
    std::int64_t inEffect = toBytes(m_features->getFeatureValue(camera, m_feature));
    if (isWritten && inEffect == 0)
        inEffect = wanted;
    if (!isWritten || inEffect != wanted) {
        logWarning(m_features->messagePrefix() + ": SetValue for '" + m_feature +
                   "' was not successfull, new value: " + std::to_string(inEffect));
    }
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
    if (!isEnough) {
        setToolTip(tr("Not sufficient bandwidth allocated."));
    }
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
    if (m_form->sliderBandwidth->styleSheet() != style) {
        m_form->sliderBandwidth->setStyleSheet(style);
    }
}

void BandwidthSliderWidget::updateLockIcon() {
    const bool dark = palette().color(QPalette::Window).lightness() < darkLightness;
    QIcon icon;
    icon.addFile(dark ? QStringLiteral(":/images/images/lock_open_darkmode.png")
                      : QStringLiteral(":/images/images/lock_open.png"),
                 {}, QIcon::Normal, QIcon::Off);
    icon.addFile(QStringLiteral(":/images/images/lock_closed.png"), {}, QIcon::Normal, QIcon::On);
    m_form->buttonLock->setIcon(icon);
}

bool BandwidthSliderWidget::discardTyping() {
    const QString typed = m_form->spinBandwidth->text();
    m_form->spinBandwidth->setValue(value());
    return m_form->spinBandwidth->text() != typed;
}

/// The wheel changes what has the focus, and otherwise scrolls the tree. Escape takes back what
/// was typed, before it closes the dialog: hidden, the spin box would settle on it.
bool BandwidthSliderWidget::eventFilter(QObject* watched, QEvent* event) {
    const auto* control = qobject_cast<QWidget*>(watched);
    if (event->type() == QEvent::Wheel && control && !control->hasFocus()) {
        event->ignore();
        return true;
    }
    if (event->type() == QEvent::KeyPress && control == m_form->spinBandwidth &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && discardTyping())
        return true;
    return QWidget::eventFilter(watched, event);
}

void BandwidthSliderWidget::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) {
        updateLockIcon();
    }
    QWidget::changeEvent(event);
}
