// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/CameraDelegate.h"

#include <QtWidgets>
#include <gtest/gtest.h>

#include <set>

namespace {

/// Draws the selection in pale colours of its own, as Windows' style does.
class PaleStyle : public QProxyStyle {
public:
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        if (element == CE_ItemViewItem)
            painter->fillRect(option->rect, QColor(0xcc, 0xe8, 0xff));
        else
            QProxyStyle::drawControl(element, option, painter, widget);
    }
};

TEST(CameraDelegate, drawsTheSelectedCameraInColoursThatGoTogether) {
    QPalette palette;
    palette.setColor(QPalette::Active, QPalette::Highlight, Qt::darkBlue);
    palette.setColor(QPalette::Active, QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Inactive, QPalette::Highlight, Qt::lightGray);
    palette.setColor(QPalette::Inactive, QPalette::HighlightedText, Qt::black);
    PaleStyle style;
    QListView view;
    view.setStyle(&style);
    QStandardItemModel model;
    model.appendRow(new QStandardItem(QStringLiteral("Camera")));

    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        QStyleOptionViewItem option;
        option.widget = &view;
        option.palette = palette;
        option.rect = QRect(0, 0, 300, 60);
        option.state = QStyle::State_Enabled | QStyle::State_Selected;
        option.state.setFlag(QStyle::State_Active, group == QPalette::Active);
        QImage image(option.rect.size(), QImage::Format_RGB32);
        QPainter painter(&image);
        viewer::CameraDelegate().paint(&painter, option, model.index(0, 0));
        painter.end();

        std::set<QRgb> colours;
        for (int place = 0; place < image.width() * image.height(); ++place)
            colours.insert(image.pixel(place % image.width(), place / image.width()));
        EXPECT_EQ(image.pixelColor(299, 59), palette.color(group, QPalette::Highlight));
        EXPECT_EQ(colours.count(palette.color(group, QPalette::HighlightedText).rgb()), 1U);
    }
}

} // namespace
