// SPDX-License-Identifier: BSD-3-Clause
#include "logging/Log.h"
#include "logging/LogMessageWidget.h"
#include "logging/ThreadLogStream.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <gmock/gmock.h>

#include <algorithm>
#include <ctime>
#include <iostream>
#include <thread>

namespace {

using Logging::LogMessageWidget;
using Logging::RowHeights;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double freezeLimitSeconds = 2.5; // instrumented code is several times slower
#else
constexpr double freezeLimitSeconds = 0.5;
#endif

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
    LongLogTest() : m_receiver(&m_table, false) {
        m_table.setItemDelegate(&m_delegate);
        m_table.horizontalHeader()->setStretchLastSection(true);
        m_table.verticalHeader()->hide();
        for (QHeaderView* header : {m_table.horizontalHeader(), m_table.verticalHeader()}) {
            header->setResizeContentsPrecision(RowHeights::newestRows);
            header->setSectionResizeMode(QHeaderView::ResizeToContents);
        }
        m_table.resize(900, 300);
        m_table.show();
    }
    ~LongLogTest() override { m_table.setItemDelegate(nullptr); }

    void log(int lines, const QString& text = QStringLiteral("a line of the usual length")) {
        for (int i = 0; i < lines; ++i)
            m_receiver.catchMessage(LogMessageType::StdOut, text);
    }

    /// How many items are measured for one more row.
    int measuredForOneRow() {
        settle();
        m_delegate.measured = 0;
        log(1);
        settle();
        return m_delegate.measured;
    }

    static void settle() {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }

    void scrollTo(int row) {
        m_table.verticalScrollBar()->setValue(row);
        settle();
    }

    CountingDelegate m_delegate;
    QTableWidget m_table;
    LogMessageWidget m_receiver;
};

TEST_P(LongLogTest, MeasuresNoMoreForARowThanAShortLog) {
    m_table.setVisible(GetParam());
    log(200);
    const int few = measuredForOneRow();
    log(4800);
    const int many = measuredForOneRow();
    EXPECT_GT(few, 0);
    EXPECT_LE(many, few);
}

INSTANTIATE_TEST_SUITE_P(HiddenAndShown, LongLogTest, testing::Bool());

TEST_F(LongLogTest, MeasuresOldRowsWhenTheyComeIntoSight) {
    const QString longText = QStringLiteral("many words ").repeated(60);
    log(20, longText);
    log(500);
    settle();
    const int usual = m_table.rowHeight(0);
    EXPECT_EQ(m_table.rowHeight(300), usual);

    scrollTo(502);
    const int wrapped = m_table.rowHeight(502);
    EXPECT_GT(wrapped, 2 * usual);

    m_table.resize(450, 300);
    settle();
    EXPECT_GT(m_table.rowHeight(502), wrapped);
}

TEST_F(LongLogTest, KeepsTheHeightsOfAHeaderOfAnotherMode) {
    m_table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    log(1);
    settle();
    m_table.setRowHeight(0, 77);
    log(100);
    scrollTo(99);
    EXPECT_EQ(m_table.rowHeight(100), 77);
}

TEST_F(LongLogTest, DoesNotFreezeInABurst) {
    constexpr int lines = 10'000;
    Logging::ThreadLogStream stream(std::cout, LogMessageType::StdOut);
    QObject::connect(&stream, &Logging::ThreadLogStream::sendLogString, &m_receiver,
                     &LogMessageWidget::catchMessage);
    std::thread([] {
        for (int i = 0; i < lines; ++i)
            logInfo("Camera " + std::to_string(i));
    }).join();

    double longest = 0;
    for (int turn = 0; turn < 10; ++turn) {
        const std::clock_t start = std::clock();
        QCoreApplication::processEvents();
        longest = std::max(longest, double(std::clock() - start) / CLOCKS_PER_SEC);
    }
    ASSERT_EQ(m_table.rowCount(), lines);
    EXPECT_EQ(m_table.item(0, 2)->text(), QStringLiteral("Camera 9999"));
    EXPECT_EQ(m_table.item(lines - 1, 2)->text(), QStringLiteral("Camera 0"));
    EXPECT_LT(longest, freezeLimitSeconds);
    RecordProperty("longestMilliseconds", static_cast<int>(longest * 1000));
}

} // namespace
