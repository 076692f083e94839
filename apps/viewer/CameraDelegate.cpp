// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/CameraDelegate.h"

#include "viewer/CameraModel.h"

#include <QApplication>
#include <QPainter>

namespace viewer {

namespace {

/// Measures of a row, which grow with its font.
struct Measures {
    explicit Measures(const QFontMetrics& font)
        : margin(font.height() / 2), lineGap(font.height() / 5), dotSize(font.ascent() * 2 / 3),
          leastWidth(font.averageCharWidth() * 30) {}

    int margin;
    int lineGap;
    int dotSize;
    int leastWidth;
};

QColor dotColor(CameraAccess access, const QPalette& palette) {
    switch (access) {
    case CameraAccess::Live:
        return QColor(0x00, 0x96, 0x40);
    case CameraAccess::InUse:
        return QColor(0xfc, 0xc2, 0x34);
    case CameraAccess::NoAnswer:
        return QColor(0xdc, 0x14, 0x3c);
    case CameraAccess::Available:
        break;
    }
    return palette.color(QPalette::Disabled, QPalette::Text);
}

QFont nameFont(QFont font) {
    font.setBold(true);
    return font;
}

QPalette::ColorGroup colorGroup(QStyle::State state) {
    if (!state.testFlag(QStyle::State_Enabled))
        return QPalette::Disabled;
    return state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

QString secondLine(const QModelIndex& index) {
    return QStringLiteral("%1  \u00b7  %2")
        .arg(index.data(CameraModel::AccessTextRole).toString(),
             index.data(CameraModel::InterfaceRole).toString());
}

} // namespace

void CameraDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const QPalette::ColorGroup group = colorGroup(option.state);
    if (isSelected) {
        // Styles may draw the selection in other colours than the palette's, as Windows' own does.
        // This one goes with the palette's colour of texts.
        painter->fillRect(option.rect, option.palette.brush(group, QPalette::Highlight));
    } else {
        QStyleOptionViewItem box = option;
        initStyleOption(&box, index);
        box.text.clear();
        const QStyle* style = box.widget != nullptr ? box.widget->style() : QApplication::style();
        style->drawControl(QStyle::CE_ItemViewItem, &box, painter, box.widget);
    }

    const QColor textColor =
        option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    const Measures measures(option.fontMetrics);
    const int margin = measures.margin;
    const int dotSize = measures.dotSize;
    const QRect inner = option.rect.adjusted(margin, margin, -margin, -margin);
    const QFont bold = nameFont(option.font);
    const int nameHeight = QFontMetrics(bold).height();

    painter->save();
    painter->setFont(bold);
    painter->setPen(textColor);
    const QString name =
        QFontMetrics(bold).elidedText(index.data().toString(), Qt::ElideRight, inner.width());
    painter->drawText(inner, Qt::AlignLeft | Qt::AlignTop, name);

    const QRect second = inner.adjusted(0, nameHeight + measures.lineGap, 0, 0);
    const auto access = static_cast<CameraAccess>(index.data(CameraModel::AccessRole).toInt());
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(dotColor(access, option.palette));
    painter->setPen(isSelected ? QPen(textColor, 1.5) : QPen(Qt::NoPen));
    painter->drawEllipse(second.left(), second.center().y() - dotSize / 2, dotSize, dotSize);

    const QRect state = second.adjusted(dotSize + margin, 0, 0, 0);
    QColor soft = textColor;
    soft.setAlphaF(0.75);
    painter->setFont(option.font);
    painter->setPen(soft);
    const QString text =
        option.fontMetrics.elidedText(secondLine(index), Qt::ElideRight, state.width());
    painter->drawText(state, Qt::AlignLeft | Qt::AlignVCenter, text);
    painter->restore();
}

QSize CameraDelegate::sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& /*index*/) const {
    const Measures measures(option.fontMetrics);
    const int height = QFontMetrics(nameFont(option.font)).height() + measures.lineGap +
                       option.fontMetrics.height() + 2 * measures.margin;
    return {measures.leastWidth, height};
}

} // namespace viewer
