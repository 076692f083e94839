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
    /// Sets the value of a column; missing columns before it are added without a value.
    void setValue(int column, const QVariant& value);
    /// Replaces the values of all columns.
    void setValues(QVector<QVariant> values);
    /// Takes \p child and returns it.
    BasicTreeItem* appendChild(std::unique_ptr<BasicTreeItem> child);
    /// Like appendChild, but inserts in front of the child at \p row; a row beyond either end means
    /// that end.
    BasicTreeItem* insertChild(int row, std::unique_ptr<BasicTreeItem> child);
    /// Position among the parent's children; 0 for the root.
    int row() const { return m_row; }

private:
    BasicTreeItem* m_parent = nullptr;
    std::vector<std::unique_ptr<BasicTreeItem>> m_children;
    QVector<QVariant> m_values;
    /// Cached: views ask for it all the time.
    int m_row = 0;
};
