// SPDX-License-Identifier: BSD-3-Clause
#include "ui/LogTable.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class LogTableTest : public testing::Test {
protected:
    LogTableTest() {
        m_table.setColumnCount(3);
        m_table.setRowCount(6);
        for (int row = 0; row < 6; ++row) {
            for (int column = 0; column < 3; ++column) {
                const QString text = QStringLiteral("%1%2").arg(row).arg(column);
                m_table.setItem(row, column, new QTableWidgetItem(text));
            }
        }
        m_table.setSelectionBehavior(QAbstractItemView::SelectRows);
        m_table.setEditTriggers(QAbstractItemView::NoEditTriggers);
        clipboard().setText(QStringLiteral("before"));
    }

    static QClipboard& clipboard() { return *QGuiApplication::clipboard(); }
    void select(int top, int bottom) { m_table.setRangeSelected({top, 0, bottom, 2}, true); }
    std::string copied() {
        QTest::keySequence(&m_table, QKeySequence::Copy);
        return clipboard().text().toStdString();
    }

    LogTable m_table;
};

TEST_F(LogTableTest, copiesTheFirstRangeOnly) {
    EXPECT_EQ(copied(), "before") << "nothing is selected";
    delete m_table.takeItem(3, 1);
    select(2, 4);
    select(0, 0);
    EXPECT_EQ(copied(), "20\t21\t22\n30\t\t32\n40\t41\t42\n");
}

TEST_F(LogTableTest, keepsAColumnWideEnoughForOlderRows) {
    m_table.item(0, 0)->setText(QStringLiteral("a wider text than all others"));
    m_table.resizeColumnsToContents();
    const int width = m_table.columnWidth(0);
    m_table.item(0, 0)->setText(QStringLiteral("short"));
    m_table.resizeColumnsToContents();
    EXPECT_EQ(m_table.columnWidth(0), width);
}

TEST_F(LogTableTest, fitsItsColumnsToTheRowsThatComeIntoSight) {
    m_table.horizontalHeader()->setResizeContentsPrecision(1);
    m_table.setRowCount(200);
    m_table.setItem(199, 0, new QTableWidgetItem(QStringLiteral("a wider text than all others")));
    m_table.show();
    m_table.resizeColumnsToContents();
    const int width = m_table.columnWidth(0);
    m_table.setCurrentCell(199, 0);
    m_table.horizontalHeader()->setResizeContentsPrecision(100);
    m_table.scrollToTop();
    m_table.scrollToBottom();
    EXPECT_GT(m_table.columnWidth(0), width);
}

} // namespace
