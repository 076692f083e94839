// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Table.h"

#include <QJsonObject>

#include <algorithm>

namespace cli {

namespace {

QString cell(const Column& column, const QJsonValue& value) {
    if (value.isDouble())
        return QString::number(value.toDouble() / column.unit, 'f', column.decimals);
    if (value.isBool())
        return value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    // A text of a camera may contain control characters, which would move the cursor.
    QString text = value.toString();
    for (QChar& character : text) {
        if (!character.isPrint() && !character.isHighSurrogate() && !character.isLowSurrogate())
            character = QLatin1Char('?');
    }
    return text;
}

/// Headings and rows of one column, all of the same width.
QStringList columnCells(const Column& column, const QJsonArray& rows) {
    QStringList cells{column.heading};
    bool isNumber = false;
    for (const QJsonValue& row : rows) {
        const QJsonValue value = row.toObject().value(column.key);
        isNumber = isNumber || value.isDouble();
        cells.append(cell(column, value));
    }
    int width = 0;
    for (const QString& text : qAsConst(cells))
        width = std::max(width, text.size());
    for (QString& text : cells)
        text = isNumber ? text.rightJustified(width) : text.leftJustified(width);
    cells.insert(1, QString(width, QLatin1Char('-')));
    return cells;
}

} // namespace

QStringList tableLines(const QVector<Column>& columns, const QJsonArray& rows) {
    QStringList lines;
    for (const Column& column : columns) {
        const QStringList cells = columnCells(column, rows);
        for (int i = 0; i < cells.size(); ++i) {
            if (i == lines.size())
                lines.append(cells[i]);
            else
                lines[i] += QStringLiteral("  ") + cells[i];
        }
    }
    for (QString& line : lines) {
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
    }
    return lines;
}

QString usageText(double usedBytesPerSecond, double bitsPerSecond) {
    const QString used = QString::number(usedBytesPerSecond / 1e6, 'f', 1);
    const QString speed = bitsPerSecond > 0 ? QString::number(bitsPerSecond / 8e6, 'f', 1)
                                            : QStringLiteral("unknown");
    return QStringLiteral("%1 of %2 MB/s").arg(used, speed);
}

QString joined(const QStringList& lines) {
    return lines.isEmpty() ? QString() : lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

} // namespace cli
