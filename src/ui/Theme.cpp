// SPDX-License-Identifier: BSD-3-Clause
#include "ui/Theme.h"

#include <QCheckBox>
#include <QPainter>

namespace {

constexpr int darkLightness = 100;
constexpr double paleOpacity = 0.35;
/// How much of the text's colour an unchecked box has in dark colours.
constexpr double textShare = 0.25;

void addFile(QIcon& icon, const QString& file, QIcon::State state) {
    const QIcon source(file);
    icon.addFile(file, {}, QIcon::Normal, state);
    for (const QSize& size : source.availableSizes()) {
        QPixmap pale(size);
        pale.fill(Qt::transparent);
        QPainter painter(&pale);
        painter.setOpacity(paleOpacity);
        source.paint(&painter, pale.rect());
        painter.end();
        icon.addPixmap(pale, QIcon::Disabled, state);
    }
}

} // namespace

bool Theme::isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < darkLightness;
}

QIcon Theme::icon(const QString& file, const QString& checkedFile) {
    QIcon result;
    addFile(result, file, QIcon::Off);
    if (!checkedFile.isEmpty())
        addFile(result, checkedFile, QIcon::On);
    return result;
}

QColor Theme::boxColor(const QPalette& palette) {
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

void Theme::fillBox(QCheckBox& box) {
    // The window's palette: the box's own still has the colour that was set before.
    const QPalette& window = box.window()->palette();
    QPalette palette;
    if (isDark(window))
        palette.setColor(QPalette::Base, boxColor(window));
    box.setPalette(palette);
}
