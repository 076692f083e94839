// SPDX-License-Identifier: BSD-3-Clause
#include "ui/features/FeatureTreeView.h"

#include "ui/features/FeatureTreeModel.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QShortcut>

#include <algorithm>

namespace {

QModelIndex valueOf(const QModelIndex& index) {
    return index.siblingAtColumn(FeatureTreeModel::ValueColumn);
}

bool isEditable(const QModelIndex& index) {
    return valueOf(index).flags().testFlag(Qt::ItemIsEditable);
}

} // namespace

FeatureTreeView::FeatureTreeView(QWidget* parent) : QTreeView(parent) {
    // Also from the name, where arrow keys and most clicks lead.
    connect(this, &QTreeView::activated, this, &FeatureTreeView::editValue);
    const auto* editKey = new QShortcut(Qt::Key_F2, this, nullptr, nullptr, Qt::WidgetShortcut);
    connect(editKey, &QShortcut::activated, this, [this] { editValue(currentIndex()); });
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &FeatureTreeView::fitNameColumn);
}

FeatureTreeView::~FeatureTreeView() = default;

void FeatureTreeView::editValue(const QModelIndex& index) {
    if (!isEditable(index))
        return;
    // The Tab key goes on from the current cell: from a value to the next value.
    setCurrentIndex(valueOf(index));
    edit(valueOf(index));
}

void FeatureTreeView::keyboardSearch(const QString& search) {
    setCurrentIndex(currentIndex().siblingAtColumn(FeatureTreeModel::NameColumn));
    QTreeView::keyboardSearch(search);
}

int FeatureTreeView::sizeHintForColumn(int column) const {
    const int wanted = QTreeView::sizeHintForColumn(column);
    if (column != FeatureTreeModel::NameColumn)
        return wanted;
    m_nameWidth = std::max(m_nameWidth, wanted);
    return std::min(m_nameWidth, width() * 3 / 5);
}

/// Rows that are scrolled into view may have longer names.
void FeatureTreeView::fitNameColumn() {
    if (sizeHintForColumn(FeatureTreeModel::NameColumn) >
        header()->sectionSize(FeatureTreeModel::NameColumn))
        header()->resizeSections(QHeaderView::ResizeToContents);
}

void FeatureTreeView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    const bool isForwards = hint == QAbstractItemDelegate::EditNextItem;
    const bool isBackwards = hint == QAbstractItemDelegate::EditPreviousItem;
    if (!isForwards && !isBackwards) {
        QTreeView::closeEditor(editor, hint);
        return;
    }
    // With the hint, the base class would edit the last row again.
    QTreeView::closeEditor(editor, QAbstractItemDelegate::NoHint);
    QModelIndex index = currentIndex();
    do
        index = isForwards ? indexBelow(index) : indexAbove(index);
    while (index.isValid() && !isEditable(index));
    editValue(index);
}
