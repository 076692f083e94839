// SPDX-License-Identifier: BSD-3-Clause
#include "ui/LogMessageWidget.h"

#include <QDateTime>
#include <QScopedValueRollback>
#include <QTableWidget>
#include <QtDebug>

#include <utility>

namespace Logging {

namespace {

const QLatin1String debugPrefix("Debug:");
const QLatin1String infoPrefix("Info:");
const QLatin1String warningPrefix("Warning:");
const QLatin1String errorPrefix("Error:");

} // namespace

LogMessageWidget::LogMessageWidget(QTableWidget* table, bool showDebugMessages, QObject* parent)
    : QObject(parent), m_table(table), m_showDebugMessages(showDebugMessages), m_rowHeights(table),
      m_debugIcon(QStringLiteral(":/images/images/debug.png")),
      m_infoIcon(QStringLiteral(":/images/images/info.png")),
      m_warningIcon(QStringLiteral(":/images/images/warning.png")),
      m_errorIcon(QStringLiteral(":/images/images/error.png")) {
    m_table->setColumnCount(3);
}

LogMessageWidget::~LogMessageWidget() = default;

void LogMessageWidget::setShowDebugMessages(bool show) {
    m_showDebugMessages = show;
    if (show)
        qDebug() << "Debug-messages "
                 << "activated.";
    else
        qInfo() << "Debug-messages "
                << "deactivated";
}

void LogMessageWidget::catchMessage(LogMessageType type, QString msg) {
    switch (static_cast<int>(type)) {
    case 0:
    case 1:
    case 2:
        catchStandardOutput(msg);
        break;
    case 3:
        catchStandardError(msg);
        break;
    default:
        insertRow(m_infoIcon, tr("INFO"), msg);
    }
}

// An "Error:" line is no special case here: it shows as information, prefix included.
void LogMessageWidget::catchStandardOutput(const QString& line) {
    if (line.startsWith(warningPrefix))
        insertRow(m_warningIcon, tr("WARNING"), line.mid(warningPrefix.size()));
    else if (line.startsWith(infoPrefix))
        insertRow(m_infoIcon, tr("INFO"), line.mid(infoPrefix.size()));
    else if (!line.startsWith(debugPrefix))
        insertRow(m_infoIcon, tr("INFO"), line);
    else if (m_showDebugMessages)
        insertRow(m_debugIcon, tr("DEBUG"), line.mid(debugPrefix.size()));
}

void LogMessageWidget::catchStandardError(const QString& line) {
    const bool prefixed = line.startsWith(errorPrefix);
    insertRow(m_errorIcon, tr("ERROR"), prefixed ? line.mid(errorPrefix.size()) : line);
}

void LogMessageWidget::insertRow(const QIcon& icon, const QString& level, const QString& text) {
    const QString time =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    m_waiting.push_back({std::make_unique<QTableWidgetItem>(icon, level),
                         std::make_unique<QTableWidgetItem>(time),
                         std::make_unique<QTableWidgetItem>(text)});
    // A slot of the table has logged while a row is inserted: that row is filled first.
    if (m_isInserting)
        return;
    const QScopedValueRollback inserting(m_isInserting, true);
    while (!m_waiting.empty()) {
        Row row = std::move(m_waiting.front());
        m_waiting.pop_front();
        m_table->insertRow(0);
        for (std::size_t column = 0; column < row.size(); ++column)
            m_table->setItem(0, static_cast<int>(column), row[column].release());
    }
}

} // namespace Logging
