// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QJsonArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace cli {

/// How one member of a JSON object is shown in a table.
struct Column {
    QString heading;
    QString key;
    /// Numbers are divided by it.
    double unit = 1;
    int decimals = 0;
};

/// The columns of the objects in \p rows as lines of text, numbers to the right; the headings, with
/// a line under them, are the first two lines. A member that is absent leaves its cell empty.
QStringList tableLines(const QVector<Column>& columns, const QJsonArray& rows);

/// "250.0 of 1250.0 MB/s" of bytes per second and of an interface's bits per second, where 0 is an
/// unknown speed.
QString usageText(double usedBytesPerSecond, double bitsPerSecond);

/// Every line with a line break.
QString joined(const QStringList& lines);

} // namespace cli
