// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "logging/LogMessageType.h"
#include "logging/RowHeights.h"

#include <QIcon>
#include <QObject>
#include <QString>

class QTableWidget;

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
    void catchStandardOutput(const QString& line);
    void catchStandardError(const QString& line);
    void insertRow(const QIcon& icon, const QString& level, const QString& text);

    QTableWidget* m_table;
    bool m_showDebugMessages;
    RowHeights m_rowHeights;
    /// Loaded once: a burst of lines shall not read its icons again and again.
    const QIcon m_debugIcon;
    const QIcon m_infoIcon;
    const QIcon m_warningIcon;
    const QIcon m_errorIcon;
};

} // namespace Logging
