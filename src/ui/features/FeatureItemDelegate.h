// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

class DelegateWidget;

/// Edits the value column of a feature tree in place, each feature in a DelegateWidget. Works on
/// any model with the roles of FeatureTreeModel, such as a proxy of one. Bound to the GUI thread.
class FeatureItemDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit FeatureItemDelegate(QObject* parent = nullptr);
    ~FeatureItemDelegate() override;

    /// None for a feature that can no longer be written. None, and a debug message, for one whose
    /// data type cannot be edited.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    /// Writes what the user chose, unless it is the present value or incomplete, and shows the
    /// value that the camera then has.
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    /// The same for all features, so that measuring reads none.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// Numbers look the same as in the editors, whatever the locale. Their unit is added where they
    /// are painted.
    QString displayText(const QVariant& value, const QLocale& locale) const override;
    /// Gives disabled text enough contrast to be read.
    static void strengthenDisabled(QPalette& palette);

signals:
    /// Emitted before an editor opens, which shows what the model then has for the feature.
    void aboutToEdit(const QModelIndex& index) const;
    /// Makes commitAndCloseEditor() run.
    void onClose();

public slots:
    /// Commits and closes the editor that sent the signal, or else the one that is open.
    void commitAndCloseEditor();

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    void commitEditor();

    /// The editor that was opened last.
    mutable QPointer<DelegateWidget> m_editor;
};
