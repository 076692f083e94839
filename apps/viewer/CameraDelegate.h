// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QStyledItemDelegate>

namespace viewer {

/// Paints a camera of the list in two lines: its name, and below a dot in the colour of its access
/// state, the state, and the interface. Bound to the GUI thread.
class CameraDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace viewer
