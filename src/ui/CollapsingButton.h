// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QParallelAnimationGroup>
#include <QPointer>
#include <QToolButton>

class QPropertyAnimation;

/// A checkable button that folds a widget open (checked) and shut by animating its maximum height.
/// Bound to the GUI thread.
class CollapsingButton : public QToolButton {
    Q_OBJECT

public:
    explicit CollapsingButton(QWidget* parent = nullptr);
    ~CollapsingButton() override;

    /// Hands over the widget to fold, once; the button does not own it. It is shut at once unless
    /// the button is checked.
    void setContent(QWidget* content);

private:
    void onToggled(bool checked);
    void onFinished();

    QParallelAnimationGroup m_animations{this};
    QPropertyAnimation* m_heightAnimation = nullptr;
    QPointer<QWidget> m_content;
};
