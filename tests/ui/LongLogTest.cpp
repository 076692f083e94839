// SPDX-License-Identifier: BSD-3-Clause
#include "ui/LogMessageWidget.h"

#include <QtWidgets>
#include <gtest/gtest.h>

namespace {

/// Counts how often an item is measured.
class CountingDelegate : public QStyledItemDelegate {
public:
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        ++measured;
        return QStyledItemDelegate::sizeHint(option, index);
    }

    mutable int measured = 0;
};

/// A log table with its headers as in the main dialog.
class LongLogTest : public testing::TestWithParam<bool> {
protected:
    LongLogTest() {
        m_table.setItemDelegate(&m_delegate);
        m_table.horizontalHeader()->setStretchLastSection(true);
        for (QHeaderView* header : {m_table.horizontalHeader(), m_table.verticalHeader()}) {
            header->setResizeContentsPrecision(RowHeights::newestRows);
            header->setSectionResizeMode(QHeaderView::ResizeToContents);
        }
        m_table.resize(900, 300);
        m_table.show();
    }
    ~LongLogTest() override { m_table.setItemDelegate(nullptr); }

    /// Adds lines and returns how many items are measured for them.
    int log(int lines) {
        m_delegate.measured = 0;
        for (int i = 0; i < lines; ++i)
            m_receiver.catchMessage(LogMessageType::StdOut, QStringLiteral("a usual line"));
        settle();
        return m_delegate.measured;
    }
    static void settle() {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }

    CountingDelegate m_delegate;
    QTableWidget m_table;
    Logging::LogMessageWidget m_receiver{&m_table, false};
};

TEST_P(LongLogTest, measuresNoMoreForARowThanAShortLog) {
    m_table.setVisible(GetParam());
    log(200);
    const int few = log(1);
    log(4800);
    EXPECT_GT(few, 0);
    EXPECT_LE(log(1), few);
    EXPECT_LE(log(1000), 3 * few) << "a burst is measured when it is over";
}

INSTANTIATE_TEST_SUITE_P(HiddenAndShown, LongLogTest, testing::Bool());

TEST_F(LongLogTest, measuresOldRowsWhenTheyComeIntoSight) {
    for (int i = 0; i < 20; ++i)
        m_receiver.catchMessage(LogMessageType::StdOut, QStringLiteral("many words ").repeated(60));
    log(500);
    const int usual = m_table.rowHeight(0);
    EXPECT_EQ(m_table.rowHeight(300), usual);

    m_table.verticalScrollBar()->setValue(502);
    settle();
    const int wrapped = m_table.rowHeight(502);
    EXPECT_GT(wrapped, 2 * usual);

    m_table.resize(450, 300);
    settle();
    EXPECT_GT(m_table.rowHeight(502), wrapped);
}

} // namespace
