// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ui/features/FeatureTreeDialog.h"

#include <QCheckBox>
#include <QPointer>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

class FeatureController;

/// The row that shows that name, wherever it is in the tree.
inline QModelIndex rowIn(const QAbstractItemModel& tree, const char* name) {
    return tree
        .match(tree.index(0, 0), Qt::DisplayRole, QLatin1String(name), 1,
               Qt::MatchExactly | Qt::MatchRecursive)
        .value(0);
}

/// A feature tree dialog on view, with its widgets.
struct FeatureTreeWindow {
    explicit FeatureTreeWindow(std::shared_ptr<FeatureController> features)
        : dialog(new FeatureTreeDialog(std::move(features))),
          tree(*dialog->findChild<QTreeView*>(QStringLiteral("treeFeatures"))),
          filter(*dialog->findChild<QCheckBox*>(QStringLiteral("checkFilter"))) {
        dialog->show();
        // Without this, waiting would sleep at least once.
        QCoreApplication::processEvents();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        QObject::connect(dialog, &FeatureTreeDialog::closed, [this] { ++closed; });
    }
    ~FeatureTreeWindow() { delete dialog; }

    QModelIndex row(const char* name) const { return rowIn(*tree.model(), name); }
    QString value(const char* name) const { return row(name).siblingAtColumn(1).data().toString(); }
    /// Begins to edit the value of a feature from its name.
    QWidget* edit(const char* name) const {
        tree.setFocus();
        tree.setCurrentIndex(row(name));
        QTest::keyClick(&tree, Qt::Key_F2);
        return editor(name);
    }

    /// Null when the value of that feature is not edited.
    QWidget* editor(const char* name) const {
        return tree.indexWidget(row(name).siblingAtColumn(1));
    }
    /// Leaves the window and comes back.
    void reactivate() const {
        QApplication::setActiveWindow(nullptr);
        QApplication::setActiveWindow(dialog);
    }

    QPointer<FeatureTreeDialog> dialog;
    QTreeView& tree;
    QCheckBox& filter;
    int closed = 0;
};
