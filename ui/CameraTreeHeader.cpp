// SPDX-License-Identifier: BSD-3-Clause
#include "ui/CameraTreeHeader.h"

#include <QFontMetrics>

namespace {
constexpr int labelPadding = 24;
}

CameraTreeHeader::CameraTreeHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setDefaultAlignment(Qt::AlignCenter);
}

QSize CameraTreeHeader::sectionSizeFromContents(int logicalIndex) const {
    const QSize asked = QHeaderView::sectionSizeFromContents(logicalIndex);
    const QString label = model()->headerData(logicalIndex, orientation()).toString();
    const QFont font =
        model()->headerData(logicalIndex, orientation(), Qt::FontRole).value<QFont>();
    const int width = QFontMetrics(font).size(0, label).width() + labelPadding;
    return {qMax(asked.width(), width), asked.height()};
}
