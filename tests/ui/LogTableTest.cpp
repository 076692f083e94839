// SPDX-License-Identifier: BSD-3-Clause
#include "ui/LogTable.h"

#include <QTest>
#include <QtWidgets>
#include <gtest/gtest.h>

namespace {

class LogTableTest : public testing::Test {
protected:
    void setText(int row, int column, const QString& text) {
        m_table.setItem(row, column, new QTableWidgetItem(text));
    }
    static QClipboard& clipboard() { return *QGuiApplication::clipboard(); }
    std::string copied() {
        QTest::keySequence(&m_table, QKeySequence::Copy);
        return clipboard().text().toStdString();
    }

    LogTable m_table;
};

TEST_F(LogTableTest, copiesTheFirstRangeOnly) {
    m_table.setColumnCount(3);
    m_table.setRowCount(6);
    for (int row = 0; row < 6; ++row) {
        for (int column = 0; column < 3; ++column)
            setText(row, column, QStringLiteral("%1%2").arg(row).arg(column));
    }
    m_table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    clipboard().setText(QStringLiteral("before"));
    EXPECT_EQ(copied(), "before") << "nothing is selected";
    delete m_table.takeItem(3, 1);
    m_table.setRangeSelected({2, 0, 4, 2}, true);
    m_table.setRangeSelected({0, 0, 0, 2}, true);
    EXPECT_EQ(copied(), "20\t21\t22\n30\t\t32\n40\t41\t42\n");
}

TEST_F(LogTableTest, widensItsColumnsForRowsThatComeIntoSightAndKeepsThemWide) {
    m_table.setColumnCount(1);
    m_table.setRowCount(200);
    setText(199, 0, QStringLiteral("a wider text than all others"));
    m_table.horizontalHeader()->setResizeContentsPrecision(1);
    m_table.show();
    m_table.resizeColumnsToContents();
    const int width = m_table.columnWidth(0);
    m_table.setCurrentCell(199, 0);
    m_table.horizontalHeader()->setResizeContentsPrecision(100);
    m_table.scrollToTop();
    m_table.scrollToBottom();
    const int wide = m_table.columnWidth(0);
    EXPECT_GT(wide, width);
    setText(199, 0, QStringLiteral("short"));
    m_table.resizeColumnsToContents();
    EXPECT_EQ(m_table.columnWidth(0), wide);
}

} // namespace
