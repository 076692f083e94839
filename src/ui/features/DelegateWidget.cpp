// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/DelegateWidget.h"

#include "features/FeatureText.h"
#include "ui/features/DoubleValidator.h"
#include "ui/features/LongSpinBox.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDebug>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolTip>
#include <qwt_scale_engine.h>
#include <qwt_slider.h>

#include <algorithm>
#include <limits>
#include <utility>
#include <variant>

namespace {

constexpr int spacing = 2;
constexpr int fixedHeight = 25;
constexpr int sliderWidth = 150;
constexpr int floatWidth = 60;
/// Leaves room for the slider in a column of usual width.
constexpr int floatDigits = 16;
constexpr QSize handleSize{12, 18};

using Read = std::optional<FeatureValue>;

/// The value as that alternative, or its default: a feature that could not be read has another.
template <class Type> Type as(const FeatureValue& value) {
    const auto* held = std::get_if<Type>(&value);
    return held != nullptr ? *held : Type();
}

bool represents(const FeatureInfo& info, const char* representation) {
    return info.dataType == OrvFeatureDataInt &&
           info.representation.find(representation) != std::string::npos;
}

template <OrvFeatureDataType type> bool isOf(const FeatureInfo& info) {
    return info.dataType == type;
}

bool isLogarithmic(const FeatureInfo& info) {
    return info.name == "ExposureTime" || info.name == "ExposureTimeAbs" ||
           info.representation == "Logarithmic";
}

QValidator* expressionValidator(const char* expression, QObject* parent) {
    return new QRegularExpressionValidator(QRegularExpression(QString::fromLatin1(expression)),
                                           parent);
}

} // namespace

const DelegateWidget::Composition* DelegateWidget::compositionFor(const FeatureInfo& info) {
    static constexpr Composition table[] = {
        {isOf<OrvFeatureDataCommand>, &DelegateWidget::buildCommand},
        {isOf<OrvFeatureDataBool>, &DelegateWidget::buildBoolean},
        {isOf<OrvFeatureDataEnum>, &DelegateWidget::buildEnumeration},
        {isOf<OrvFeatureDataString>, &DelegateWidget::buildString},
        {[](const FeatureInfo& i) { return represents(i, "HexNumber"); },
         &DelegateWidget::buildHex},
        {[](const FeatureInfo& i) { return represents(i, "IPV4Address"); },
         &DelegateWidget::buildIp},
        {[](const FeatureInfo& i) { return represents(i, "MACAddress"); },
         &DelegateWidget::buildMac},
        {isOf<OrvFeatureDataInt>, &DelegateWidget::buildInteger},
        {isOf<OrvFeatureDataFloat>, &DelegateWidget::buildFloat},
    };
    const auto* found = std::find_if(std::begin(table), std::end(table),
                                     [&info](const Composition& row) { return row.suits(info); });
    return found != std::end(table) ? found : nullptr;
}

bool DelegateWidget::canEdit(const FeatureInfo& info) {
    return compositionFor(info) != nullptr;
}

bool DelegateWidget::hasUnit(const FeatureInfo& info) {
    const bool isNumber =
        info.dataType == OrvFeatureDataInt || info.dataType == OrvFeatureDataFloat;
    return isNumber && !info.unit.empty();
}

DelegateWidget::DelegateWidget(FeatureInfo info, QWidget* parent)
    : QWidget(parent), m_info(std::move(info)),
      m_grid(as<std::int64_t>(m_info.minimum), as<std::int64_t>(m_info.maximum),
             as<std::int64_t>(m_info.increment)),
      m_scale(as<double>(m_info.minimum), as<double>(m_info.maximum), as<double>(m_info.increment),
              isLogarithmic(m_info)) {
    // Hides the row's text, and keeps mouse events from the row.
    setAutoFillBackground(true);
    // On the background of a table, a dark check box could not be seen.
    setBackgroundRole(QPalette::Window);
    setAttribute(Qt::WA_NoMousePropagation);
    setFocusPolicy(Qt::StrongFocus);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    if (const Composition* composition = compositionFor(m_info)) {
        (this->*composition->build)();
        if (hasUnit(m_info))
            row->addWidget(new QLabel(QString::fromStdString(m_info.unit)));
        setFocusProxy(m_holder);
        setValue(m_info.value);
    }
}

/// Parts emit editingFinished when they lose the focus while they are destroyed.
DelegateWidget::~DelegateWidget() {
    for (QWidget* part : m_parts)
        part->disconnect(this);
}

template <class Widget> Widget* DelegateWidget::add(Widget* part) {
    layout()->addWidget(part);
    part->installEventFilter(this);
    part->setFocusPolicy(Qt::WheelFocus);
    m_parts << part;
    m_holder = part;
    return part;
}

void DelegateWidget::buildCommand() {
    auto* button = add(new QPushButton(tr("Execute")));
    button->setCheckable(true);
    button->setFixedHeight(fixedHeight);
    static_cast<QHBoxLayout*>(layout())->addStretch();
    connect(button, &QPushButton::clicked, this, &DelegateWidget::saveEditorData);
}

void DelegateWidget::buildBoolean() {
    const auto* box = add(new QCheckBox);
    connect(box, &QCheckBox::clicked, this, &DelegateWidget::saveEditorData);
}

void DelegateWidget::buildEnumeration() {
    layout()->setSpacing(0);
    auto* box = add(new QComboBox);
    box->setFixedHeight(fixedHeight);
    // As wide as the column: one as wide as its longest entry would not fit there, and would
    // measure all of them.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    for (const FeatureValue& entry : m_info.availableValues)
        box->addItem(QString::fromStdString(as<std::string>(entry)));
    connect(box, QOverload<int>::of(&QComboBox::activated), this, &DelegateWidget::saveEditorData);
}

void DelegateWidget::addLine(const TextForm& form, QValidator* validator) {
    m_form = &form;
    m_line = add(new QLineEdit);
    // Otherwise a long value would be cut off, and the cut text be written.
    m_line->setMaxLength(std::numeric_limits<int>::max());
    m_line->setValidator(validator);
    showHintWhenRejecting(*m_line);
}

void DelegateWidget::buildString() {
    static constexpr TextForm plain{
        [](const FeatureValue& v) { return QString::fromStdString(as<std::string>(v)); },
        [](const QString& text) -> Read {
            return text.toStdString();
        }};
    addLine(plain, nullptr);
    connect(m_line, &QLineEdit::editingFinished, this, &DelegateWidget::onEditingFinished);
}

void DelegateWidget::buildHex() {
    static constexpr TextForm hex{
        [](const FeatureValue& v) { return toHexText(as<std::int64_t>(v)); },
        [](const QString& text) -> Read {
            return fromHexText(text);
        }};
    layout()->addWidget(new QLabel(QStringLiteral("0x")));
    m_hint = tr("Up to 8 hexadecimal digits");
    addLine(hex, expressionValidator("([0-9a-fA-F]){1,8}", this));
    connect(m_line, &QLineEdit::editingFinished, this, &DelegateWidget::onEditingFinishedHex);
}

void DelegateWidget::buildIp() {
    static constexpr TextForm ip{
        [](const FeatureValue& v) { return toIpText(as<std::int64_t>(v)); },
        [](const QString& text) -> Read {
            return fromIpText(text);
        }};
    m_hint = tr("An IPv4 address, such as 192.168.0.1");
    addLine(ip, expressionValidator("(([01]?[0-9]?[0-9]|2[0-4][0-9]|25[0-5])\\.){3}"
                                    "([01]?[0-9]?[0-9]|2[0-4][0-9]|25[0-5])",
                                    this));
    connect(m_line, &QLineEdit::editingFinished, this, &DelegateWidget::onEditingFinishedIP);
}

void DelegateWidget::buildMac() {
    static constexpr TextForm mac{
        [](const FeatureValue& v) { return toMacText(as<std::int64_t>(v)); },
        [](const QString& text) -> Read {
            return fromMacText(text);
        }};
    m_hint = tr("A MAC address, such as 02:00:00:00:00:01");
    addLine(mac, expressionValidator("^([0-9A-Fa-f]{2}[:-]){5}([0-9A-Fa-f]{2})$", this));
    connect(m_line, &QLineEdit::editingFinished, this, &DelegateWidget::onEditingFinished);
}

void DelegateWidget::buildInteger() {
    m_slider = add(new QSlider(Qt::Horizontal));
    m_slider->setMinimumWidth(sliderWidth);
    m_slider->setRange(m_grid.sliderMinimum(), m_grid.sliderMaximum());
    m_slider->setSingleStep(m_grid.sliderStep());
    m_slider->setPageStep(m_grid.sliderPage());
    m_slider->setEnabled(m_grid.isKnown());
    connect(m_slider, &QSlider::valueChanged, this, &DelegateWidget::onSliderMoved);
    connect(m_slider, &QSlider::sliderReleased, this, &DelegateWidget::saveEditorData);
    m_spin = add(new LongSpinBox(m_grid));
    m_spin->setFixedHeight(fixedHeight);
    connect(m_spin, &LongSpinBox::valueStepped, this, &DelegateWidget::moveSlider);
    connect(m_spin, &LongSpinBox::editingFinished, this, &DelegateWidget::onEditingFinished);
    showHintWhenRejecting(*m_spin->findChild<QLineEdit*>());
    m_hint = tr("A whole number from %1 to %2").arg(m_grid.minimum()).arg(m_grid.maximum());
}

void DelegateWidget::buildFloat() {
    static constexpr TextForm number{
        [](const FeatureValue& v) { return toDoubleText(as<double>(v)); },
        [](const QString& text) -> Read {
            return fromDoubleText(text);
        }};
    addFloatSlider();
    // Without a range that could be read, or that makes sense, the camera decides.
    const double minimum = as<double>(m_info.minimum);
    const double maximum = as<double>(m_info.maximum);
    const bool isKnown = minimum <= maximum && (minimum != 0 || maximum != 0);
    constexpr double unlimited = std::numeric_limits<double>::max();
    auto* validator = isKnown ? new DoubleValidator(minimum, maximum, this)
                              : new DoubleValidator(-unlimited, unlimited, this);
    m_hint = isKnown ? tr("A number from %1 to %2, with up to 10 decimals after a point")
                           .arg(toDoubleText(minimum), toDoubleText(maximum))
                     : tr("A number, with up to 10 decimals after a point");
    addLine(number, validator);
    m_line->setMinimumWidth(floatWidth);
    m_line->setMaximumWidth(m_line->fontMetrics().averageCharWidth() * floatDigits);
    m_line->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(m_line, &QLineEdit::editingFinished, this, &DelegateWidget::onEditingFinishedDouble);
}

void DelegateWidget::addFloatSlider() {
    m_floatSlider = add(new QwtSlider(Qt::Horizontal));
    m_floatSlider->setScalePosition(QwtSlider::NoScale);
    // A groove, as other sliders have.
    m_floatSlider->setTrough(false);
    m_floatSlider->setGroove(true);
    m_floatSlider->setHandleSize(handleSize);
    m_floatSlider->setMinimumWidth(sliderWidth);
    m_floatSlider->setEnabled(m_scale.isUsable());
    if (!m_scale.isUsable())
        return;
    if (m_scale.isLogarithmic())
        m_floatSlider->setScaleEngine(new QwtLogScaleEngine);
    m_floatSlider->setScale(m_scale.lower(), m_scale.upper());
    m_floatSlider->setTotalSteps(m_scale.steps());
    m_floatSlider->setSingleSteps(1);
    m_floatSlider->setPageSteps(m_scale.pageSteps());
    connect(m_floatSlider, &QwtSlider::valueChanged, this, &DelegateWidget::onDoubleSliderMoved);
}

std::optional<FeatureValue> DelegateWidget::input() const {
    return m_holder != nullptr ? valueOf(*m_holder) : std::nullopt;
}

/// Nothing while a text is not complete.
std::optional<FeatureValue> DelegateWidget::valueOf(const QWidget& part) const {
    if (const auto* line = qobject_cast<const QLineEdit*>(&part)) {
        // Untouched: the value itself, since its text may be rounded or not acceptable.
        if (line->text() == m_form->show(m_shown))
            return m_shown;
        return line->hasAcceptableInput() ? m_form->read(line->text()) : std::nullopt;
    }
    if (const auto* box = qobject_cast<const QCheckBox*>(&part))
        return box->isChecked();
    // No entry is current while the feature has one that cannot be chosen now.
    if (const auto* box = qobject_cast<const QComboBox*>(&part))
        return box->currentIndex() < 0 ? m_value : FeatureValue(box->currentText().toStdString());
    if (const auto* spin = qobject_cast<const LongSpinBox*>(&part))
        return spin->isComplete() ? Read(spin->value()) : std::nullopt;
    // The spin box has the exact value.
    if (qobject_cast<const QSlider*>(&part) != nullptr)
        return m_spin->value();
    if (const auto* button = qobject_cast<const QPushButton*>(&part))
        return button->isChecked();
    qDebug() << "Unhandled class:" << part.metaObject()->className();
    return std::nullopt;
}

void DelegateWidget::setValue(const FeatureValue& value) {
    m_value = value;
    if (m_form != nullptr)
        showText(value);
    if (m_spin != nullptr)
        m_spin->setValue(as<std::int64_t>(value));
    moveSlider();
    if (auto* box = qobject_cast<QCheckBox*>(m_holder)) {
        // One that could not be read has another type, and is not to be written for that.
        m_value = as<bool>(value);
        box->setChecked(as<bool>(value));
    }
    if (auto* box = qobject_cast<QComboBox*>(m_holder))
        box->setCurrentIndex(box->findText(QString::fromStdString(as<std::string>(value))));
    if (auto* button = qobject_cast<QPushButton*>(m_holder)) {
        button->setChecked(false);
        m_value = false;
    }
}

void DelegateWidget::refreshValue(const FeatureValue& value) {
    const auto shown = input();
    const bool isEdited = !shown || (*shown != m_value && *shown == *shown);
    if (isEdited)
        m_value = value;
    else
        setValue(value);
}

void DelegateWidget::showText(const FeatureValue& value) {
    m_shown = value;
    m_line->setText(m_form->show(value));
}

void DelegateWidget::moveSlider() {
    if (m_slider != nullptr) {
        const QSignalBlocker blocker(m_slider);
        m_slider->setValue(m_grid.positionOf(m_spin->value()));
    }
    if (m_floatSlider != nullptr && m_scale.isUsable()) {
        const QSignalBlocker blocker(m_floatSlider);
        m_floatSlider->setValue(as<double>(m_shown));
    }
}

void DelegateWidget::tidyText() {
    if (const auto value = valueOf(*m_line))
        showText(*value);
}

void DelegateWidget::onEditingFinished() {
    if (m_spin == nullptr) {
        tidyText();
        return;
    }
    m_spin->setValue(m_spin->value());
    moveSlider();
}

void DelegateWidget::onEditingFinishedDouble() {
    tidyText();
    moveSlider();
}

void DelegateWidget::onEditingFinishedHex() {
    tidyText();
}

void DelegateWidget::onEditingFinishedIP() {
    tidyText();
}

void DelegateWidget::onSliderMoved(int position) {
    const std::int64_t value = m_grid.valueAt(position);
    m_spin->setValue(value);
    // The handle stays under the mouse, else it goes where the value is.
    if (!m_slider->isSliderDown())
        moveSlider();
    emit sliderValueChanged(value);
}

void DelegateWidget::onDoubleSliderMoved(double value) {
    showText(m_scale.valueAt(value));
}

void DelegateWidget::saveEditorData() {
    const auto* part = qobject_cast<QWidget*>(sender());
    if (part == nullptr) {
        qDebug("Cannot get sender widget.");
        return;
    }
    const auto value = valueOf(*part);
    if (!value)
        return;
    tell(*value);
    if (part != m_slider)
        emit editingFinished();
}

void DelegateWidget::tell(const FeatureValue& value) {
    if (const auto* integer = std::get_if<std::int64_t>(&value))
        emit newIntValueToSet(*integer);
    else if (const auto* number = std::get_if<double>(&value))
        emit newStringValueToSet(toDoubleText(*number));
    else if (const auto* flag = std::get_if<bool>(&value))
        emit newBoolValueToSet(*flag);
    else
        emit newStringValueToSet(QString::fromStdString(std::get<std::string>(value)));
}

void DelegateWidget::showHintWhenRejecting(const QLineEdit& line) {
    connect(&line, &QLineEdit::inputRejected, this, &DelegateWidget::showHint);
    connect(&line, &QLineEdit::textEdited, &QToolTip::hideText);
}

void DelegateWidget::showHint() {
    QToolTip::showText(m_holder->mapToGlobal(m_holder->rect().bottomLeft()), m_hint, m_holder);
}

bool DelegateWidget::eventFilter(QObject* watched, QEvent* event) {
    auto& part = *static_cast<QWidget*>(watched);
    const bool isKeyPress = event->type() == QEvent::KeyPress;
    if (isKeyPress && onKeyPressed(part, *static_cast<QKeyEvent*>(event)))
        return true;
    switch (event->type()) {
    case QEvent::FocusIn:
        // So the view knows that its editor has the focus.
        setFocusProxy(&part);
        if (&part == m_spin)
            m_spin->selectAll();
        return false;
    case QEvent::FocusOut:
        // Null while another program is in use: the editor stays open.
        if (QApplication::focusWidget() != nullptr && !holdsFocus())
            emit editingFinished();
        return false;
    case QEvent::MouseButtonRelease:
        if (&part != m_slider && &part != m_floatSlider)
            return false;
        release(part, *event);
        return true;
    case QEvent::Wheel:
        // Scrolling in a window that is not in use must not change a value.
        if (!holdsFocus()) {
            event->ignore();
            return true;
        }
        [[fallthrough]];
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        const bool saysChosen = qobject_cast<QComboBox*>(watched) != nullptr ||
                                qobject_cast<QCheckBox*>(watched) != nullptr;
        if (!saysChosen)
            return false;
        const QSignalBlocker browsing(watched);
        watched->event(event);
        return true;
    }
    default:
        return false;
    }
}

/// True when the key has done its work.
bool DelegateWidget::onKeyPressed(QWidget& part, const QKeyEvent& event) {
    if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter)
        return false;
    if (auto* button = qobject_cast<QPushButton*>(&part)) {
        button->click();
    } else if (const auto value = input()) {
        tell(*value);
        emit editingFinished();
    } else {
        showHint();
    }
    // Passed on, the key would press the default button of the dialog.
    return true;
}

/// Commits what a slider was moved to, also by clicks beside the handle, of which it tells nothing.
void DelegateWidget::release(QWidget& slider, QEvent& event) {
    const bool tellsItself = m_slider != nullptr && m_slider->isSliderDown();
    static_cast<QObject&>(slider).event(&event);
    const auto value = input();
    if (!tellsItself && value)
        tell(*value);
}

/// Wheel events that no part handles scroll the tree.
void DelegateWidget::wheelEvent(QWheelEvent* event) {
    QApplication::sendEvent(parentWidget(), event);
}

bool DelegateWidget::holdsFocus() const {
    const QWidget* widget = QApplication::focusWidget();
    while (widget != nullptr && widget != this)
        widget = widget->parentWidget();
    return widget == this;
}

bool DelegateWidget::focusNextPrevChild(bool next) {
    const int index = m_parts.indexOf(QApplication::focusWidget()) + (next ? 1 : -1);
    // At the ends the view handles the key, and edits another row.
    if (index < 0 || index >= m_parts.size() || !m_parts.at(index)->isEnabled())
        return false;
    m_parts.at(index)->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}
