// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/Appearance.h"

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStyleFactory>

namespace viewer {

namespace {

constexpr int usualPointSize = 9;

QPalette darkPalette() {
    // Far enough apart for Fusion's outlines to show on both.
    const QColor window(0x44, 0x46, 0x49);
    const QColor base(0x1e, 0x1f, 0x21);
    const QColor text(0xe6, 0xe6, 0xe6);
    const QColor faint(0x80, 0x80, 0x80);
    QPalette palette(QColor(0x50, 0x52, 0x55), window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x28, 0x2a));
    palette.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3c, 0x3f));
    palette.setColor(QPalette::Link, QColor(0x5a, 0xa9, 0xe6));
    palette.setColor(QPalette::Highlight, QColor(0x2a, 0x6f, 0xb0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::BrightText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4a, 0x4c, 0x4f));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, faint);
    return palette;
}

} // namespace

bool hasScreen() {
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

void applyAppearance(bool isDark) {
    if (!hasScreen()) {
        // Offscreen there is no desktop font, and Qt's own default is larger than any.
        QFont font = QApplication::font();
        font.setPointSize(usualPointSize);
        QApplication::setFont(font);
    }
    if (isDark || !hasScreen())
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (isDark)
        QApplication::setPalette(darkPalette());
}

} // namespace viewer
