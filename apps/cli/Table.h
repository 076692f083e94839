// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

namespace cli {

/// A table column for one member of JSON objects.
struct Column {
    QString heading;
    QString key;
    /// Divisor of numbers.
    double unit = 1;
    int decimals = 0;
};

/// A table's cells by row, the headings first, and for each column whether it has numbers.
struct TableCells {
    QVector<QStringList> rows;
    QVector<bool> isNumber;
};

/// The objects in \p rows as cells; that of an absent member is empty.
TableCells tableCells(const QVector<Column>& columns, const QJsonArray& rows);

/// The objects in \p rows as lines of text. The first two lines are the headings and a rule.
/// Numbers are right-aligned; an absent member leaves its cell empty.
QStringList tableLines(const QVector<Column>& columns, const QJsonArray& rows);

/// "250.0 of 1250.0 MB/s". A speed of 0 is shown as "unknown".
QString usageText(double usedBytesPerSecond, double bitsPerSecond);

/// The document on one line, ended by a line break.
QString jsonLine(const QJsonObject& document);

/// The lines, each ended by a line break.
QString joined(const QStringList& lines);

} // namespace cli
