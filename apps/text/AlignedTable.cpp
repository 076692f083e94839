// SPDX-License-Identifier: BSD-3-Clause
#include "text/AlignedTable.h"

#include <algorithm>

QStringList alignedTable(const QVector<QStringList>& rows, const QVector<bool>& isNumber) {
    QStringList lines;
    for (int i = 0; i <= rows.size(); ++i)
        lines.append(QString());
    for (int column = 0; column < isNumber.size(); ++column) {
        int width = 0;
        for (const QStringList& row : rows)
            width = std::max(width, row[column].size());
        QStringList cells;
        for (const QStringList& row : rows)
            cells.append(isNumber[column] ? row[column].rightJustified(width)
                                          : row[column].leftJustified(width));
        cells.insert(1, QString(width, QLatin1Char('-')));
        for (int line = 0; line < lines.size(); ++line)
            lines[line] += (column > 0 ? QStringLiteral("  ") : QString()) + cells[line];
    }
    for (QString& line : lines) {
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
    }
    return lines;
}
