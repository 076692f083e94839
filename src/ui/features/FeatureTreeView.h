// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QTreeView>

/// Tree view of a FeatureTreeModel, or of a proxy of it. Bound to the GUI thread.
class FeatureTreeView : public QTreeView {
    Q_OBJECT

public:
    explicit FeatureTreeView(QWidget* parent = nullptr);
    ~FeatureTreeView() override;

    /// Opens the editor of the value in the row of \p index, if that value can be edited.
    void editValue(const QModelIndex& index);
    /// Searches the names, also when a value is the current cell, as after an edit.
    void keyboardSearch(const QString& search) override;

protected:
    /// The name column only grows, so that the values do not move while rows are scrolled or read
    /// again, and leaves two fifths of the view to the values.
    int sizeHintForColumn(int column) const override;
    /// After the Tab key, goes on to the next row whose value can be edited.
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void fitNameColumn();

    mutable int m_nameWidth = 0;
};
