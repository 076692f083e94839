// SPDX-License-Identifier: BSD-3-Clause
#include "ui/CollapsingButton.h"

#include <QApplication>
#include <QPropertyAnimation>

namespace {
constexpr int durationMs = 300;
constexpr int extraHeight = 10;
} // namespace

CollapsingButton::CollapsingButton(QWidget* parent) : QToolButton(parent) {
    setCheckable(true);
    setStyleSheet(QStringLiteral("background:none"));
    setIconSize({8, 8});
    setFont(QApplication::font());
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setArrowType(Qt::RightArrow);
    connect(this, &QToolButton::toggled, this, &CollapsingButton::onToggled);
    connect(&m_animations, &QAbstractAnimation::finished, this, &CollapsingButton::onFinished);
}

CollapsingButton::~CollapsingButton() = default;

void CollapsingButton::setContent(QWidget* content) {
    m_content = content;
    m_heightAnimation = new QPropertyAnimation(content, "maximumHeight", &m_animations);
    m_heightAnimation->setDuration(durationMs);
    m_heightAnimation->setStartValue(0);
    m_heightAnimation->setEasingCurve(QEasingCurve::InOutQuad);
    m_animations.addAnimation(m_heightAnimation);
    if (isChecked())
        return;
    content->setMaximumHeight(0);
    content->hide();
}

void CollapsingButton::onToggled(bool checked) {
    setArrowType(checked ? Qt::DownArrow : Qt::RightArrow);
    if (m_content == nullptr)
        return;
    // A layout may have given the open widget more height than its contents ask for: folding shut
    // begins there, or the first frames would show nothing happening.
    if (m_animations.state() == QAbstractAnimation::Stopped) {
        const int open = m_content->sizeHint().height() + extraHeight;
        m_heightAnimation->setEndValue(checked ? open : qMax(open, m_content->height()));
    }
    m_animations.setDirection(checked ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
    m_content->show();
    m_animations.start();
}

void CollapsingButton::onFinished() {
    if (m_content == nullptr)
        return;
    // Once open, the widget's layout decides on its height, as if it had never been folded.
    if (isChecked())
        m_content->setMaximumHeight(QWIDGETSIZE_MAX);
    else
        m_content->hide();
}
