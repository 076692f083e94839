// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/editors/DelegateWidget.h"

#include "features/FeatureText.h"

#include <QApplication>
#include <QDebug>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolTip>

#include <algorithm>
#include <utility>

bool DelegateWidget::hasUnit(const FeatureInfo& info) {
    const bool isNumber =
        info.dataType == OrvFeatureDataInt || info.dataType == OrvFeatureDataFloat;
    return isNumber && !info.unit.empty();
}

DelegateWidget::DelegateWidget(FeatureInfo info, QWidget* parent)
    : QWidget(parent), m_info(std::move(info)) {
    // Hides the row's text, and keeps mouse events from the row.
    setAutoFillBackground(true);
    // On the background of a table, a dark check box could not be seen.
    setBackgroundRole(QPalette::Window);
    setAttribute(Qt::WA_NoMousePropagation);
    setFocusPolicy(Qt::StrongFocus);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
}

int DelegateWidget::partHeight() const {
    constexpr int usualHeight = 25;
    constexpr int frame = 3;
    return std::max(usualHeight, fontMetrics().height() + 2 * frame);
}

/// Parts emit editingFinished when they lose the focus while they are destroyed.
DelegateWidget::~DelegateWidget() {
    for (QWidget* part : m_parts)
        part->disconnect(this);
}

void DelegateWidget::adopt(QWidget& part) {
    part.installEventFilter(this);
    part.setFocusPolicy(Qt::WheelFocus);
}

void DelegateWidget::addUnit() {
    if (hasUnit(m_info))
        row().addWidget(new QLabel(QString::fromStdString(m_info.unit)));
}

void DelegateWidget::setHint(const QString& hint, const QLineEdit& line) {
    m_hint = hint;
    connect(&line, &QLineEdit::inputRejected, this, &DelegateWidget::showHint);
    connect(&line, &QLineEdit::textEdited, &QToolTip::hideText);
}

void DelegateWidget::showHint() {
    QWidget* last = m_parts.constLast();
    QToolTip::showText(last->mapToGlobal(last->rect().bottomLeft()), m_hint, last);
}

void DelegateWidget::setValue(const FeatureValue& value) {
    m_value = show(value);
}

void DelegateWidget::refreshValue(const FeatureValue& value) {
    const auto shown = input();
    const bool isEdited = !shown || (*shown != m_value && *shown == *shown);
    if (isEdited)
        m_value = value;
    else
        setValue(value);
}

void DelegateWidget::saveEditorData() {
    auto* part = qobject_cast<QWidget*>(sender());
    if (part == nullptr) {
        qDebug("Cannot get sender widget.");
        return;
    }
    if (!m_parts.contains(part)) {
        qDebug() << "Unhandled class:" << part->metaObject()->className();
        return;
    }
    if (const auto value = input()) {
        tell(*value);
        emit editingFinished();
    }
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

bool DelegateWidget::eventFilter(QObject* watched, QEvent* event) {
    auto& part = *static_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::FocusIn:
        // The view looks at the editor's focus, not at that of its parts.
        setFocusProxy(&part);
        return false;
    case QEvent::FocusOut:
        // Null while another program is in use: the editor stays open.
        if (QApplication::focusWidget() != nullptr && !holdsFocus())
            emit editingFinished();
        return false;
    case QEvent::MouseButtonRelease:
        return release(part, *event);
    case QEvent::Wheel:
        // Scrolling in a window that is not in use must not change a value.
        if (!holdsFocus()) {
            event->ignore();
            return true;
        }
        return browse(part, *event);
    case QEvent::KeyPress:
        return onKeyPressed(part, *static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease:
        return browse(part, *event);
    default:
        return false;
    }
}

bool DelegateWidget::onKeyPressed(QWidget& part, QKeyEvent& event) {
    if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter)
        return browse(part, event);
    confirm();
    // Passed on, the key would press the default button of the dialog.
    return true;
}

void DelegateWidget::confirm() {
    if (const auto value = input()) {
        tell(*value);
        emit editingFinished();
    } else {
        showHint();
    }
}

/// Commits what a slider was moved to. Its own signal leaves out clicks beside the handle.
bool DelegateWidget::release(QWidget& part, QEvent& event) {
    if (&part != m_slider)
        return false;
    static_cast<QObject&>(part).event(&event);
    if (const auto value = input())
        tell(*value);
    return true;
}

bool DelegateWidget::browse(QWidget& part, QEvent& event) {
    if (!m_isSilent)
        return false;
    const QSignalBlocker silent(&part);
    static_cast<QObject&>(part).event(&event);
    return true;
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
