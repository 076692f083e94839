// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QStyledItemDelegate>

/// Draws the cells of the camera tree: numbers centred below their headers, and no text behind an
/// index widget. Bound to the GUI thread.
class CameraTreeDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};
