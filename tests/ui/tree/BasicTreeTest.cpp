// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/TextTree.h"
#include "ui/tree/BasicTreeModel.h"

#include <QAbstractItemModelTester>
#include <QFont>
#include <QFontMetrics>
#include <QSignalSpy>
#include <QSize>
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
        first->appendChild(makeItem("c"));
        first->insertChild(0, makeItem("a"));
        first->insertChild(1, makeItem("b"))->setValue(2, 7);
        root()->appendChild(makeItem("second"));
        endResetModel();
    }
};

TEST(BasicTreeItem, knowsItsPlaceAfterInsertionsAnywhere) {
    Item root;
    const Item* end = root.appendChild(makeItem("end"));
    const Item* beyond = root.insertChild(99, makeItem("beyond"));
    const Item* front = root.insertChild(-5, makeItem("front"));

    EXPECT_EQ(root.childCount(), 3);
    EXPECT_EQ(front->row(), 0);
    EXPECT_EQ(end->row(), 1);
    EXPECT_EQ(beyond->row(), 2);
    EXPECT_EQ(root.child(1), end);
    EXPECT_EQ(end->parent(), &root);
    EXPECT_EQ(root.parent(), nullptr);
    EXPECT_EQ(root.child(3), nullptr);
    EXPECT_EQ(root.child(-1), nullptr);
}

TEST(BasicTreeItem, hasNoValueBeyondItsColumns) {
    Item item({1, 2});
    EXPECT_EQ(item.columnCount(), 2);
    EXPECT_FALSE(item.value(-1).isValid());
    EXPECT_FALSE(item.value(2).isValid());

    item.setValue(4, 5);
    EXPECT_EQ(item.columnCount(), 5);
    EXPECT_EQ(item.value(1), 2);
    EXPECT_FALSE(item.value(3).isValid());
    EXPECT_EQ(item.value(4), 5);
}

class BasicTreeModelTest : public testing::Test {
protected:
    SmallModel m_model;
    QAbstractItemModelTester m_tester{&m_model,
                                      QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(BasicTreeModelTest, showsItsItems) {
    m_model.setHeaderLabels({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
    m_model.setupModelData();
    EXPECT_EQ(textTree(m_model), "first\n"
                                 "  a\n"
                                 "  b | - | 7\n"
                                 "  c\n"
                                 "second\n");

    const QModelIndex first = m_model.index(0, 0);
    EXPECT_EQ(m_model.rowCount(first.siblingAtColumn(1)), 0);
    EXPECT_EQ(m_model.parent(m_model.index(2, 1, first)), first);
    const QModelIndexList rows{m_model.index(0, 0, first), m_model.index(1, 0, first),
                               m_model.index(2, 0, first)};
    EXPECT_EQ(m_model.childIndexes(first), rows);
    EXPECT_EQ(m_model.childIndexes(), QModelIndexList({first, m_model.index(1, 0)}));
}

TEST_F(BasicTreeModelTest, changesTheLabelsOfItsHorizontalHeaderOnly) {
    m_model.setHeaderLabels({QStringLiteral("A"), QStringLiteral("B")});
    qRegisterMetaType<Qt::Orientation>();
    QSignalSpy changed(&m_model, &QAbstractItemModel::headerDataChanged);
    const QVariant text = QStringLiteral("New");

    EXPECT_FALSE(m_model.setHeaderData(0, Qt::Vertical, text, Qt::DisplayRole));
    EXPECT_FALSE(m_model.setHeaderData(0, Qt::Horizontal, text, Qt::EditRole));
    EXPECT_FALSE(m_model.setHeaderData(2, Qt::Horizontal, text, Qt::DisplayRole));
    EXPECT_FALSE(m_model.setHeaderData(-1, Qt::Horizontal, text, Qt::DisplayRole));
    EXPECT_TRUE(changed.isEmpty());

    EXPECT_TRUE(m_model.setHeaderData(1, Qt::Horizontal, text, Qt::DisplayRole));
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(m_model.headerData(1, Qt::Horizontal), text);
    EXPECT_EQ(m_model.headerData(0, Qt::Horizontal), QStringLiteral("A"));
}

TEST_F(BasicTreeModelTest, leavesRoomForTwoBoldLinesInItsHeader) {
    m_model.setHeaderLabels({QStringLiteral("A")});
    const QFont font = m_model.headerData(0, Qt::Horizontal, Qt::FontRole).value<QFont>();
    EXPECT_EQ(font.weight(), 75);
    EXPECT_EQ(m_model.headerData(0, Qt::Horizontal, Qt::SizeHintRole).toSize(),
              QSize(100, QFontMetrics(font).height() * 2 + 20));
    EXPECT_FALSE(m_model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
    EXPECT_EQ(m_model.headerData(0, Qt::Vertical), 1);
}

} // namespace
