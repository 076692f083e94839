// SPDX-License-Identifier: BSD-3-Clause
#include "ui/LogMessageWidget.h"
#include "tests/ui/Images.h"

#include <QDateTime>
#include <QTableWidget>

namespace {

using Logging::LogMessageWidget;

/// Level and text of each row.
std::string rowsOf(const QTableWidget& table) {
    QString rows;
    for (int row = 0; row < table.rowCount(); ++row)
        rows += table.item(row, 0)->text() + QLatin1Char('|') + table.item(row, 2)->text() +
                QLatin1Char('\n');
    return rows.toStdString();
}

TEST(LogMessageWidgetTest, classifiesALineByItsStreamAndPrefix) {
    const struct {
        int type;
        const char* line;
        bool showDebug;
        std::string rows;
    } cases[] = {
        {1, "Info:\u20AC", false, "INFO|\u20AC\n"},
        {1, "Warning: T", false, "WARNING| T\n"},
        {1, "Debug:T", false, ""},
        {1, "Debug:T", true, "DEBUG|T\n"},
        {1, "Error:T", true, "INFO|Error:T\n"},
        {1, "", false, "INFO|\n"},
        {1, "info:T", false, "INFO|info:T\n"},
        {1, " Warning:T", false, "INFO| Warning:T\n"},
        {0, "Warning:T", false, "WARNING|T\n"},
        {2, "Debug:T", false, ""},
        {3, "Error:T", false, "ERROR|T\n"},
        {3, "T", false, "ERROR|T\n"},
        {3, "Debug:T", false, "ERROR|Debug:T\n"},
        {4, "Warning:T", false, "INFO|Warning:T\n"},
        {-1, "Error:T", false, "INFO|Error:T\n"},
    };
    initResources();
    for (const auto& tested : cases) {
        QTableWidget table;
        LogMessageWidget receiver(&table, tested.showDebug);
        receiver.catchMessage(static_cast<LogMessageType>(tested.type),
                              QString::fromUtf8(tested.line));
        EXPECT_EQ(rowsOf(table), tested.rows) << tested.type << tested.line;
        if (const auto* level = table.item(0, 0)) {
            EXPECT_EQ(imageOf(level->icon()), programImage(level->text().toLower().toLatin1()));
        }
    }
}

class LogRowsTest : public testing::Test {
protected:
    void log(const char* text) {
        m_receiver.catchMessage(LogMessageType::StdOut, QString::fromLatin1(text));
    }

    QTableWidget m_table;
    LogMessageWidget m_receiver{&m_table, false};
};

TEST_F(LogRowsTest, haveTheNewestOnTopWithItsTime) {
    qputenv("TZ", "XYZ-5:30"); // so that the local time is not UTC
    const QString format = QStringLiteral("yyyy-MM-dd hh:mm:ss");
    const QString before = QDateTime::currentDateTime().toString(format);
    log("first");
    log("second");
    const QString after = QDateTime::currentDateTime().toString(format);
    qunsetenv("TZ");
    EXPECT_EQ(rowsOf(m_table), "INFO|second\nINFO|first\n");
    EXPECT_GE(m_table.item(0, 1)->text(), before);
    EXPECT_LE(m_table.item(0, 1)->text(), after);
}

TEST_F(LogRowsTest, areFilledWhenASlotOfTheTableLogs) {
    const auto logMore = [this] {
        if (m_table.rowCount() < 3)
            log("inner");
    };
    const auto& model = *m_table.model();
    QObject::connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, logMore);
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, logMore);
    QObject::connect(&model, &QAbstractItemModel::dataChanged, logMore);
    log("outer");
    const QString inner = QStringLiteral("INFO|inner\n").repeated(m_table.rowCount() - 1);
    EXPECT_EQ(rowsOf(m_table), inner.toStdString() + "INFO|outer\n");
}

} // namespace
