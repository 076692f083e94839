// SPDX-License-Identifier: BSD-3-Clause
#include "ui/CameraTreeDelegate.h"

#include "ui/Theme.h"

#include <QAbstractItemView>

namespace {
/// Room for the spin boxes and bars; all rows have the same height.
constexpr int rowPadding = 14;
} // namespace

QSize CameraTreeDelegate::sizeHint(const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const {
    const QSize size = QStyledItemDelegate::sizeHint(option, index);
    return {size.width(), qMax(size.height(), option.fontMetrics.height() + rowPadding)};
}

void CameraTreeDelegate::initStyleOption(QStyleOptionViewItem* option,
                                         const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    option->palette.setColor(QPalette::Base, Theme::boxColor(option->palette));
    if (index.column() == 0)
        return;
    option->displayAlignment = Qt::AlignCenter;
    const auto* view = qobject_cast<const QAbstractItemView*>(option->widget);
    if (view != nullptr && view->indexWidget(index) != nullptr)
        option->text.clear();
}
