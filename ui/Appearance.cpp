// SPDX-License-Identifier: BSD-3-Clause
#include "ui/Appearance.h"

#include <QCheckBox>
#include <QPainter>

namespace {

constexpr int darkLightness = 100;
constexpr double paleOpacity = 0.35;
/// How much of the text's colour an unchecked box has in dark colours.
constexpr double textShare = 0.25;

} // namespace

bool Appearance::isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < darkLightness;
}

QIcon Appearance::icon(const QString& file) {
    QIcon result(file);
    for (const QSize& size : result.availableSizes()) {
        QPixmap pale(size);
        pale.fill(Qt::transparent);
        QPainter painter(&pale);
        painter.setOpacity(paleOpacity);
        result.paint(&painter, pale.rect());
        painter.end();
        result.addPixmap(pale, QIcon::Disabled);
    }
    return result;
}

QColor Appearance::boxColor(const QPalette& palette) {
    if (!isDark(palette))
        return palette.color(QPalette::Base);
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    const auto mix = [](int from, int to) {
        return from + static_cast<int>((to - from) * textShare);
    };
    return {mix(window.red(), text.red()), mix(window.green(), text.green()),
            mix(window.blue(), text.blue())};
}

void Appearance::fillBox(QCheckBox& box) {
    // Its own has the colour of the last time, and changes after its window's.
    const QPalette& window = box.window()->palette();
    QPalette palette;
    if (isDark(window))
        palette.setColor(QPalette::Base, boxColor(window));
    box.setPalette(palette);
}
