// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/StatisticsTable.h"

#include <algorithm>

namespace viewer {

namespace {

QVector<int> columnWidths(const QVector<QStringList>& rows) {
    QVector<int> widths;
    for (const QStringList& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (int column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    }
    return widths;
}

QString line(const QStringList& cells) {
    QString text = cells.join(QLatin1String("  "));
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text + QLatin1Char('\n');
}

} // namespace

QString alignedTable(const QVector<QStringList>& rows, int textColumns) {
    const QVector<int> widths = columnWidths(rows);
    QString table;
    for (const QStringList& row : rows) {
        QStringList cells;
        for (int column = 0; column < row.size(); ++column) {
            cells << (column < textColumns ? row[column].leftJustified(widths[column])
                                           : row[column].rightJustified(widths[column]));
        }
        table += line(cells);
        if (&row == &rows.constFirst()) {
            QStringList underlines;
            for (const int width : widths)
                underlines << QString(width, QLatin1Char('-'));
            table += line(underlines);
        }
    }
    return table;
}

} // namespace viewer
