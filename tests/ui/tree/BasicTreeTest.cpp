// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/TextTree.h"
#include "ui/tree/BasicTreeModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtWidgets>
#include <gtest/gtest.h>

namespace {

using Item = BasicTreeItem;

std::unique_ptr<Item> makeItem(const char* text) {
    return std::make_unique<Item>(QVector<QVariant>{QString::fromLatin1(text)});
}

/// Two branches. The rows of the first were inserted out of order.
class SmallModel : public BasicTreeModel {
public:
    QVariant data(const QModelIndex& index, int role) const override {
        return role == Qt::DisplayRole ? itemAt(index)->value(index.column()) : QVariant();
    }
    void setupModelData() override {
        beginResetModel();
        setRoot(makeItem("root"));
        Item* first = root()->appendChild(makeItem("first"));
        first->insertChild(99, makeItem("c"));
        first->insertChild(-5, makeItem("a"));
        first->insertChild(1, makeItem("b"))->setValue(2, 7);
        root()->appendChild(makeItem("second"));
        endResetModel();
    }
};

class BasicTree : public testing::Test {
protected:
    BasicTree() {
        m_model.setHeaderLabels({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
    }

    SmallModel m_model;
    QAbstractItemModelTester m_tester{&m_model,
                                      QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(BasicTree, showsItsItemsInTheOrderOfTheirRows) {
    m_model.setupModelData();
    EXPECT_EQ(textTree(m_model), "first\n"
                                 "  a\n"
                                 "  b | - | 7\n"
                                 "  c\n"
                                 "second\n");
    const QModelIndex first = m_model.index(0, 0);
    EXPECT_EQ(m_model.rowCount(first.siblingAtColumn(1)), 0);
    EXPECT_EQ(m_model.parent(m_model.index(2, 1, first)), first);
    EXPECT_EQ(m_model.childIndexes(), QModelIndexList({first, m_model.index(1, 0)}));
    EXPECT_FALSE(Item({1, 2}).value(-1).isValid());
}

TEST_F(BasicTree, changesTheTextsOfItsHorizontalHeaderOnly) {
    qRegisterMetaType<Qt::Orientation>();
    QSignalSpy changed(&m_model, &QAbstractItemModel::headerDataChanged);
    const QVariant text = QStringLiteral("New");
    EXPECT_FALSE(m_model.setHeaderData(0, Qt::Vertical, text, Qt::DisplayRole));
    EXPECT_FALSE(m_model.setHeaderData(0, Qt::Horizontal, text, Qt::EditRole));
    for (const int beyond : {-1, 3})
        EXPECT_FALSE(m_model.setHeaderData(beyond, Qt::Horizontal, text, Qt::DisplayRole));
    EXPECT_TRUE(changed.isEmpty());
    EXPECT_TRUE(m_model.setHeaderData(1, Qt::Horizontal, text, Qt::DisplayRole));
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(m_model.headerData(1, Qt::Horizontal), text);
    EXPECT_EQ(m_model.headerData(0, Qt::Horizontal), QStringLiteral("A"));
    // Room for two bold lines.
    const QFont font = m_model.headerData(0, Qt::Horizontal, Qt::FontRole).value<QFont>();
    EXPECT_EQ(font.weight(), 75);
    EXPECT_EQ(m_model.headerData(0, Qt::Horizontal, Qt::SizeHintRole).toSize(),
              QSize(100, QFontMetrics(font).height() * 2 + 20));
}

} // namespace
