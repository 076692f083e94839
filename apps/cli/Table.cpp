// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Table.h"

#include "text/AlignedTable.h"
#include "text/PrintableText.h"

#include <QJsonDocument>

namespace cli {

namespace {

QString cell(const Column& column, const QJsonValue& value) {
    if (value.isDouble())
        return QString::number(value.toDouble() / column.unit, 'f', column.decimals);
    if (value.isBool())
        return value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    return printableText(value.toString());
}

} // namespace

QStringList tableLines(const QVector<Column>& columns, const QJsonArray& rows) {
    QVector<QStringList> cells(rows.size() + 1);
    QVector<bool> isNumber;
    for (const Column& column : columns) {
        cells[0].append(column.heading);
        isNumber.append(false);
        for (int row = 0; row < rows.size(); ++row) {
            const QJsonValue value = rows[row].toObject().value(column.key);
            isNumber.last() = isNumber.last() || value.isDouble();
            cells[row + 1].append(cell(column, value));
        }
    }
    return alignedTable(cells, isNumber);
}

QString usageText(double usedBytesPerSecond, double bitsPerSecond) {
    const QString used = QString::number(usedBytesPerSecond / 1e6, 'f', 1);
    const QString speed = bitsPerSecond > 0 ? QString::number(bitsPerSecond / 8e6, 'f', 1)
                                            : QStringLiteral("unknown");
    return QStringLiteral("%1 of %2 MB/s").arg(used, speed);
}

QString jsonLine(const QJsonObject& document) {
    return QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Compact)) +
           QLatin1Char('\n');
}

QString joined(const QStringList& lines) {
    return lines.isEmpty() ? QString() : lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

} // namespace cli
