// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "logging/LogMessageType.h"
#include "ui/RowHeights.h"

#include <QIcon>
#include <QObject>
#include <QString>

#include <array>
#include <deque>
#include <memory>

class QTableWidget;
class QTableWidgetItem;

namespace Logging {

/// Puts log lines as rows at the top of a table: level with icon, time and text. Bound to the GUI
/// thread; lines of other threads come through a queued connection.
class LogMessageWidget : public QObject {
    Q_OBJECT

public:
    /// \p table gets three columns; it is not owned and must outlive this object.
    LogMessageWidget(QTableWidget* table, bool showDebugMessages, QObject* parent = nullptr);
    ~LogMessageWidget() override;

    /// Shows or drops the debug lines from now on, and logs which of the two.
    void setShowDebugMessages(bool show);

public slots:
    /// Classifies a line by its stream and its prefix and inserts its row.
    void catchMessage(LogMessageType type, QString msg);

private:
    using Row = std::array<std::unique_ptr<QTableWidgetItem>, 3>;

    void catchStandardOutput(const QString& line);
    void catchStandardError(const QString& line);
    void insertRow(const QIcon& icon, const QString& level, const QString& text);

    QTableWidget* m_table;
    bool m_showDebugMessages;
    bool m_isInserting = false;
    /// Rows that wait until another one is filled, the oldest in front.
    std::deque<Row> m_waiting;
    RowHeights m_rowHeights;
    /// Loaded once, not for every line.
    const QIcon m_debugIcon;
    const QIcon m_infoIcon;
    const QIcon m_warningIcon;
    const QIcon m_errorIcon;
};

} // namespace Logging
