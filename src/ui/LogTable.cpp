// SPDX-License-Identifier: BSD-3-Clause
#include "ui/LogTable.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QKeyEvent>

#include <algorithm>

namespace {

QString textOf(const QAbstractItemModel& model, const QItemSelectionRange& range) {
    QString text;
    for (int row = range.top(); row <= range.bottom(); ++row) {
        QStringList cells;
        for (int column = range.left(); column <= range.right(); ++column)
            cells.append(model.index(row, column).data().toString());
        text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    return text;
}

} // namespace

LogTable::LogTable(QWidget* parent) : QTableWidget(parent) {}

LogTable::~LogTable() = default;

void LogTable::keyPressEvent(QKeyEvent* event) {
    if (!selectionModel()->hasSelection() || !event->matches(QKeySequence::Copy)) {
        QTableWidget::keyPressEvent(event);
        return;
    }
    const QString text = textOf(*model(), selectionModel()->selection().constFirst());
    QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
}

int LogTable::sizeHintForColumn(int column) const {
    int& width = m_columnWidths[column];
    width = std::max(width, QTableWidget::sizeHintForColumn(column));
    return width;
}

void LogTable::verticalScrollbarValueChanged(int value) {
    QTableWidget::verticalScrollbarValueChanged(value);
    resizeColumnsToContents();
}
