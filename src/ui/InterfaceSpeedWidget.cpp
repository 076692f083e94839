// SPDX-License-Identifier: BSD-3-Clause
#include "ui/InterfaceSpeedWidget.h"

#include "ui_InterfaceSpeedWidget.h"

#include <QContextMenuEvent>
#include <QInputDialog>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

const QString& barStyle() {
    static const QString style =
        QStringLiteral("QProgressBar::chunk { width: 10px; background-color: %1; } QProgressBar{ "
                       "border: 2px solid "
                       "grey; border-radius: 2px; text-align: center; color: %2; }");
    return style;
}

constexpr int leastLabelWidth = 30;
/// As in barStyle().
constexpr int barBorder = 2;
constexpr int largestInt = std::numeric_limits<int>::max();

} // namespace

InterfaceSpeedWidget::InterfaceSpeedWidget(int maxBandwidth, QWidget* parent)
    : QWidget(parent), m_form(std::make_unique<Ui::InterfaceSpeedWidget>()),
      m_maxBandwidth(std::max(maxBandwidth, 0)) {
    m_form->setupUi(this);
    // A view makes a row current when the row's widget gets the focus, which would select another
    // interface. A part of the widget does not do that.
    setFocusProxy(m_form->progressBarUsage);
    m_form->progressBarUsage->installEventFilter(this);
    // The form's greatest height is too small for the text of a large font and the border.
    m_form->progressBarUsage->setMaximumHeight(std::max(m_form->progressBarUsage->maximumHeight(),
                                                        fontMetrics().height() + 2 * barBorder));
    showUsage();
}

InterfaceSpeedWidget::~InterfaceSpeedWidget() = default;

void InterfaceSpeedWidget::setMaxBandwidth(int maxBandwidth) {
    m_maxBandwidth = std::max(maxBandwidth, 0);
    showUsage();
    updateColor(static_cast<int>(m_safetyMargin));
}

void InterfaceSpeedWidget::showUsage() {
    QProgressBar* bar = m_form->progressBarUsage;
    const bool isKnown = m_maxBandwidth > 0;
    // A range from 0 to 0 would make the bar busy.
    bar->setRange(0, isKnown ? m_maxBandwidth : 1);
    bar->setValue(std::min(m_usedBandwidth, bar->maximum()));
    bar->setTextVisible(isKnown);
    QLabel* label = m_form->labelSpeed;
    label->setText(QStringLiteral("%1 / %2").arg(m_usedBandwidth).arg(m_maxBandwidth));
    label->setMinimumWidth(std::max(leastLabelWidth, label->sizeHint().width()));
}

void InterfaceSpeedWidget::updateColor(int safetyMargin) {
    QProgressBar* bar = m_form->progressBarUsage;
    QString chunk = QStringLiteral("#009640");
    QString text = QStringLiteral("#c0c0c0");
    QString toolTip = tr("Interface bandwidth usage is OK.");
    const double usage = static_cast<double>(bar->value()) / bar->maximum() * 100;
    if (m_usedBandwidth > m_maxBandwidth) {
        chunk = QStringLiteral("#dc143c");
        toolTip = tr("Bandwidth used by connected cameras is greater than it is available on this "
                     "interface.");
    } else if (static_cast<int>(usage) > 100 - safetyMargin) {
        chunk = QStringLiteral("#fcc234");
        text = QStringLiteral("#000000");
        toolTip = tr("Bandwidth used by connected cameras affects safety margin on the interface "
                     "(%1%).")
                      .arg(safetyMargin);
    }
    // A new style sheet is costly even when it is the old one.
    const QString style = barStyle().arg(chunk, text);
    if (bar->styleSheet() != style)
        bar->setStyleSheet(style);
    bar->setToolTip(toolTip);
}

void InterfaceSpeedWidget::setValue(int cameraNo, int safetyMargin, int value) {
    m_safetyMargin = safetyMargin;
    m_cameraBandwidths[cameraNo] = value;
    std::int64_t used = 0;
    for (const auto& [camera, bandwidth] : m_cameraBandwidths)
        used += bandwidth;
    m_usedBandwidth = static_cast<int>(std::clamp<std::int64_t>(used, 0, largestInt));
    showUsage();
    updateColor(safetyMargin);
}

void InterfaceSpeedWidget::manualSetMaxBandwidth() {
    const QPointer<InterfaceSpeedWidget> guard(this);
    bool isConfirmed = false;
    const int entered = QInputDialog::getInt(
        this, QStringLiteral("Interface Bandwidth"),
        QStringLiteral("Please enter the maximal bandwidth on this interface (MBytes/s):"),
        m_maxBandwidth, 0, largestInt, 10, &isConfirmed,
        Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    // A refresh may have deleted the row meanwhile.
    if (!guard || !isConfirmed)
        return;
    setMaxBandwidth(entered);
    emit maxBandwidthChanged(entered);
}

void InterfaceSpeedWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::RightButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    showMenu(event->globalPos());
}

void InterfaceSpeedWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mouseDoubleClickEvent(event);
        return;
    }
    manualSetMaxBandwidth();
}

void InterfaceSpeedWidget::contextMenuEvent(QContextMenuEvent* event) {
    // A right click has opened the menu in mousePressEvent().
    if (event->reason() == QContextMenuEvent::Keyboard)
        showMenu(mapToGlobal(rect().center()));
}

bool InterfaceSpeedWidget::eventFilter(QObject* /*watched*/, QEvent* event) {
    // The focus frame is around the whole widget.
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        update();
    return false;
}

void InterfaceSpeedWidget::paintEvent(QPaintEvent*) {
    if (hasFocus()) {
        QStylePainter painter(this);
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.backgroundColor = palette().color(backgroundRole());
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
    }
}

void InterfaceSpeedWidget::showMenu(const QPoint& globalPosition) {
    auto* menu = new QMenu(tr("Context menu"), this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QAction* overwrite = menu->addAction(QStringLiteral("Overwrite max. bandwidth"));
    // Queued: the row, and the menu with it, may be deleted while the question is open, and must
    // not be deleted inside of the menu's own click.
    connect(overwrite, &QAction::triggered, this, &InterfaceSpeedWidget::manualSetMaxBandwidth,
            Qt::QueuedConnection);
    menu->popup(globalPosition);
}
