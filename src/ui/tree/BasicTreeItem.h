// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QVariant>
#include <QVector>

#include <memory>
#include <vector>

/// One row of a BasicTreeModel: a value per column, and the rows below it, which it owns. Bound to
/// the GUI thread.
class BasicTreeItem {
public:
    explicit BasicTreeItem(QVector<QVariant> values = {});
    virtual ~BasicTreeItem();

    BasicTreeItem(const BasicTreeItem&) = delete;
    BasicTreeItem& operator=(const BasicTreeItem&) = delete;

    /// None for the root.
    BasicTreeItem* parent() const { return m_parent; }
    /// None when there is no such row.
    BasicTreeItem* child(int row) const;
    int childCount() const;
    int columnCount() const;
    /// An invalid variant for a column without a value.
    QVariant value(int column) const;
    /// Columns between the last one and \p column come into being without a value.
    void setValue(int column, const QVariant& value);
    /// Replaces the values of all columns.
    void setValues(QVector<QVariant> values);
    /// Answers the child, now owned by this item.
    BasicTreeItem* appendChild(std::unique_ptr<BasicTreeItem> child);
    /// As appendChild, but in front of the child at \p row, which moves on together with those
    /// behind it; a row beyond either end means that end.
    BasicTreeItem* insertChild(int row, std::unique_ptr<BasicTreeItem> child);
    /// Position among the parent's children; 0 for the root.
    int row() const { return m_row; }

private:
    BasicTreeItem* m_parent = nullptr;
    std::vector<std::unique_ptr<BasicTreeItem>> m_children;
    QVector<QVariant> m_values;
    /// Kept here since views ask for an item's parent, and thereby its row, all the time.
    int m_row = 0;
};
