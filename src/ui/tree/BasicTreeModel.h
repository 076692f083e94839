// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ui/tree/BasicTreeItem.h"

#include <QAbstractItemModel>
#include <QStringList>

#include <memory>

/// A tree of BasicTreeItem as an item model, with one header label per column. Bound to the GUI
/// thread.
class BasicTreeModel : public QAbstractItemModel {
    Q_OBJECT

public:
    explicit BasicTreeModel(QObject* parent = nullptr);
    ~BasicTreeModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    using QObject::parent;
    int rowCount(const QModelIndex& parent = {}) const override;
    /// One column per header label.
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    /// Changes the label of an existing horizontal section; false for anything else.
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant& value,
                       int role = Qt::EditRole) override;

    /// Sets the labels, and thereby the number of columns.
    void setHeaderLabels(const QStringList& labels);
    void setHeaderToolTips(const QStringList& toolTips);

    /// Column 0 of all rows below \p parent, of the topmost rows when it is invalid.
    QModelIndexList childIndexes(const QModelIndex& parent = {}) const;

    /// Builds the tree anew.
    virtual void setupModelData() = 0;

protected:
    /// The item of an index, the root for an invalid one.
    BasicTreeItem* itemAt(const QModelIndex& index) const;
    /// Index of an item of this model; invalid for the root.
    QModelIndex indexOf(BasicTreeItem* item, int column = 0) const;
    BasicTreeItem* root() const { return m_root.get(); }
    /// Replaces the whole tree; to be called within a model reset.
    void setRoot(std::unique_ptr<BasicTreeItem> root);
    const QStringList& headerToolTips() const { return m_headerToolTips; }

private:
    std::unique_ptr<BasicTreeItem> m_root;
    QStringList m_headerLabels;
    QStringList m_headerToolTips;
};
