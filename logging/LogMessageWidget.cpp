// SPDX-License-Identifier: BSD-3-Clause
#include "logging/LogMessageWidget.h"

#include <QDateTime>
#include <QTableWidget>
#include <QtDebug>

#include <utility>

namespace Logging {

LogMessageWidget::LogMessageWidget(QTableWidget* table, bool showDebugMessages, QObject* parent)
    : QObject(parent), m_table(table), m_showDebugMessages(showDebugMessages) {
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

} // namespace Logging
