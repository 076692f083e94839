// SPDX-License-Identifier: BSD-3-Clause
#include "ui/LogMessageWidget.h"
#include "logging/Log.h"
#include "logging/QtMessageHandler.h"
#include "logging/ThreadLogStream.h"
#include "tests/support/Resources.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QIcon>
#include <QImage>
#include <QTableWidget>
#include <gmock/gmock.h>

#include <iostream>
#include <thread>

namespace {

using Logging::LogMessageWidget;
using Logging::ThreadLogStream;

std::string textAt(const QTableWidget& table, int row, int column) {
    const QTableWidgetItem* item = table.item(row, column);
    return item == nullptr ? "(no item)" : item->text().toStdString();
}

QImage picture(const QIcon& icon) {
    return icon.pixmap(15, 15).toImage();
}

QImage levelPicture(const char* level) {
    const QString name = QString::fromLatin1(level).toLower();
    const QImage image = picture(QIcon(QStringLiteral(":/images/images/%1.png").arg(name)));
    EXPECT_FALSE(image.isNull());
    return image;
}

struct Case {
    int type;
    const char* line;
    bool showDebug;
    /// Empty: no row.
    const char* level;
    const char* text;
};

const Case cases[] = {
    {1, "Info:\u20AC", false, "INFO", "\u20AC"},
    {1, "Warning: T", false, "WARNING", " T"},
    {1, "Debug:T", false, "", ""},
    {1, "Debug:T", true, "DEBUG", "T"},
    {1, "Error:T", true, "INFO", "Error:T"},
    {1, "T", false, "INFO", "T"},
    {1, "", false, "INFO", ""},
    {1, "info:T", false, "INFO", "info:T"},
    {1, " Warning:T", false, "INFO", " Warning:T"},
    {0, "Warning:T", false, "WARNING", "T"},
    {2, "Debug:T", false, "", ""},
    {3, "Error:T", false, "ERROR", "T"},
    {3, "T", false, "ERROR", "T"},
    {3, "Debug:T", false, "ERROR", "Debug:T"},
    {4, "Warning:T", false, "INFO", "Warning:T"},
    {-1, "Error:T", false, "INFO", "Error:T"},
};

TEST(LogMessageWidgetTest, classifiesALineByItsStreamAndPrefix) {
    initResources();
    for (const Case& tested : cases) {
        SCOPED_TRACE(tested.line);
        QTableWidget table;
        LogMessageWidget receiver(&table, tested.showDebug);
        receiver.catchMessage(static_cast<LogMessageType>(tested.type),
                              QString::fromUtf8(tested.line));
        ASSERT_EQ(table.rowCount(), *tested.level == '\0' ? 0 : 1);
        if (table.rowCount() == 0)
            continue;
        EXPECT_EQ(textAt(table, 0, 0), tested.level);
        EXPECT_EQ(textAt(table, 0, 2), tested.text);
        EXPECT_EQ(picture(table.item(0, 0)->icon()), levelPicture(tested.level));
    }
}

TEST(LogMessageWidgetTest, putsTheNewestRowOnTopWithItsTime) {
    qputenv("TZ", "XYZ-5:30"); // so that the local time is not UTC
    QTableWidget table;
    LogMessageWidget receiver(&table, false);
    EXPECT_EQ(table.columnCount(), 3);

    const QString format = QStringLiteral("yyyy-MM-dd hh:mm:ss");
    const QString before = QDateTime::currentDateTime().toString(format);
    receiver.catchMessage(LogMessageType::StdOut, QStringLiteral("first"));
    receiver.catchMessage(LogMessageType::StdOut, QStringLiteral("second"));
    const QString after = QDateTime::currentDateTime().toString(format);
    qunsetenv("TZ");

    ASSERT_EQ(table.rowCount(), 2);
    EXPECT_EQ(textAt(table, 0, 2), "second");
    EXPECT_EQ(textAt(table, 1, 2), "first");
    EXPECT_GE(table.item(0, 1)->text(), before);
    EXPECT_LE(table.item(0, 1)->text(), after);
}

/// The receiver wired up as in the main dialog.
class WiredLogTest : public testing::Test {
protected:
    WiredLogTest() {
        for (const ThreadLogStream* stream : {&m_output, &m_error})
            QObject::connect(stream, &ThreadLogStream::sendLogString, &m_receiver,
                             &LogMessageWidget::catchMessage);
        qInstallMessageHandler(qtMessageHandler);
    }
    ~WiredLogTest() override { qInstallMessageHandler(nullptr); }

    std::string row(int index) const {
        return textAt(m_table, index, 0) + '|' + textAt(m_table, index, 2);
    }

    QTableWidget m_table;
    ThreadLogStream m_output{std::cout, LogMessageType::StdOut};
    ThreadLogStream m_error{std::cerr, LogMessageType::StdErr};
    LogMessageWidget m_receiver{&m_table, false};
};

TEST_F(WiredLogTest, switchesDebugMessages) {
    m_receiver.setShowDebugMessages(true);
    ASSERT_EQ(m_table.rowCount(), 1);
    EXPECT_EQ(row(0).rfind("DEBUG|Debug-messages  activated.", 0), 0U) << row(0);
    m_receiver.setShowDebugMessages(false);
    ASSERT_EQ(m_table.rowCount(), 2);
    EXPECT_EQ(row(0).rfind("INFO|Debug-messages  deactivated", 0), 0U) << row(0);
    logDebug("hidden");
    EXPECT_EQ(m_table.rowCount(), 2);
}

TEST_F(WiredLogTest, takesLinesOfOtherThreadsInTheEventLoop) {
    std::thread([] { logWarning("from afar"); }).join();
    EXPECT_EQ(m_table.rowCount(), 0);
    QCoreApplication::processEvents();
    ASSERT_EQ(m_table.rowCount(), 1);
    EXPECT_EQ(row(0), "WARNING|from afar");
}

TEST_F(WiredLogTest, fillsEveryRowWhenASlotOfTheTableLogs) {
    const auto logOnce = [this] {
        if (m_table.rowCount() < 3)
            logInfo("inner");
    };
    QObject::connect(m_table.model(), &QAbstractItemModel::rowsAboutToBeInserted, logOnce);
    QObject::connect(m_table.model(), &QAbstractItemModel::rowsInserted, logOnce);
    QObject::connect(m_table.model(), &QAbstractItemModel::dataChanged, logOnce);
    logInfo("outer");
    for (int index = 0; index < m_table.rowCount(); ++index)
        EXPECT_EQ(row(index), index + 1 < m_table.rowCount() ? "INFO|inner" : "INFO|outer");
}

} // namespace
