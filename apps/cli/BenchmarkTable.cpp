// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkTable.h"

#include "cli/AdapterLoad.h"
#include "cli/Benchmark.h"
#include "cli/Cameras.h"
#include "cli/LossFindings.h"

#include <algorithm>

namespace cli {

namespace {

/// Shown only where a row has the figure.
constexpr const char* rareColumns[] = {"linkPercent",         "packetsResent", "packetsMissing",
                                       "receiverDrops",       "frameSeconds",  "largestGapSeconds",
                                       "burstBytesPerSecond", "status"};
/// What narrow tables do without, the least important first.
constexpr const char* droppedColumns[] = {"burstBytesPerSecond",
                                          "largestGapSeconds",
                                          "frameSeconds",
                                          "name",
                                          "packetsResent",
                                          "linkPercent",
                                          "receivedFrames",
                                          "receiverDrops",
                                          "packetsMissing",
                                          "incompleteFrames",
                                          "lostFrames",
                                          "bytesPerSecond",
                                          "status"};

/// The cameras, and their total as one more row.
QJsonArray tableRows(const QJsonObject& interface) {
    QJsonArray rows;
    for (const QJsonValue& camera : interface[QStringLiteral("cameras")].toArray()) {
        QJsonObject row = camera.toObject();
        const QJsonValue seconds = row.value(QStringLiteral("disconnectedAfterSeconds"));
        if (seconds.isDouble())
            row[QStringLiteral("status")] =
                QStringLiteral("disconnected after %1 s").arg(seconds.toDouble(), 0, 'f', 0);
        const QJsonValue silence = row.value(QStringLiteral("silentSeconds"));
        if (silence.isDouble())
            row[QStringLiteral("status")] =
                QStringLiteral("silent for %1 s").arg(silence.toDouble(), 0, 'f', 0);
        rows.append(row);
    }
    QJsonObject total = interface[QStringLiteral("total")].toObject();
    total[QStringLiteral("id")] = QStringLiteral("Total");
    rows.append(total);
    return rows;
}

void removeColumn(QVector<Column>& columns, const char* key) {
    columns.erase(
        std::remove_if(columns.begin(), columns.end(),
                       [key](const Column& column) { return column.key == QLatin1String(key); }),
        columns.end());
}

bool hasFigure(const QJsonArray& rows, const char* key) {
    return std::any_of(rows.begin(), rows.end(), [key](const QJsonValue& row) {
        return row.toObject().contains(QLatin1String(key));
    });
}

QVector<Column> columnsOf(const QJsonArray& rows) {
    constexpr double mega = 1e6;
    constexpr double milli = 1e-3;
    QVector<Column> columns{
        {QStringLiteral("Camera"), QStringLiteral("id")},
        {QStringLiteral("Name"), QStringLiteral("name")},
        {QStringLiteral("Frames/s"), QStringLiteral("framesPerSecond"), 1, 2},
        {QStringLiteral("MB/s"), QStringLiteral("bytesPerSecond"), mega, 2},
        {QStringLiteral("Link %"), QStringLiteral("linkPercent"), 1, 1},
        {QStringLiteral("Received"), QStringLiteral("receivedFrames")},
        {QStringLiteral("Lost"), QStringLiteral("lostFrames")},
        {QStringLiteral("Incomplete"), QStringLiteral("incompleteFrames")},
        {QStringLiteral("Loss %"), QStringLiteral("lossPercent"), 1, 2},
        {QStringLiteral("Resent"), QStringLiteral("packetsResent")},
        {QStringLiteral("Missing"), QStringLiteral("packetsMissing")},
        {QStringLiteral("Dropped"), QStringLiteral("receiverDrops")},
        {QStringLiteral("Frame ms"), QStringLiteral("frameSeconds"), milli, 2},
        {QStringLiteral("Gap ms"), QStringLiteral("largestGapSeconds"), milli, 2},
        {QStringLiteral("Burst MB/s"), QStringLiteral("burstBytesPerSecond"), mega, 1},
        {QStringLiteral("Status"), QStringLiteral("status")},
    };
    for (const char* key : rareColumns) {
        if (!hasFigure(rows, key))
            removeColumn(columns, key);
    }
    return columns;
}

/// The second line is the rule below the headings, as wide as the table.
bool fits(const QStringList& table, int width) {
    return table[1].size() <= width;
}

} // namespace

QStringList benchmarkLines(const QJsonObject& interface, int width) {
    const QJsonArray rows = tableRows(interface);
    QVector<Column> columns = columnsOf(rows);
    const QStringList full = tableLines(columns, rows);
    QStringList lines = full;
    for (const char* key : droppedColumns) {
        if (fits(lines, width))
            return lines;
        removeColumn(columns, key);
        lines = tableLines(columns, rows);
    }
    return fits(lines, width) ? lines : full;
}

TableCells benchmarkCells(const QJsonObject& interface) {
    const QJsonArray rows = tableRows(interface);
    return tableCells(columnsOf(rows), rows);
}

QString benchmarkText(const QJsonObject& benchmark, int width, bool explainsAll) {
    QStringList texts;
    for (const QJsonValue& value : interfacesOf(benchmark)) {
        const QJsonObject interface = value.toObject();
        const QString heading = QStringLiteral("%1, %2 s%3%4\n")
                                    .arg(interface[QStringLiteral("interface")].toString())
                                    .arg(benchmark[QStringLiteral("seconds")].toDouble(), 0, 'f', 1)
                                    .arg(benchmark[QStringLiteral("interrupted")].toBool()
                                             ? QStringLiteral(", interrupted")
                                             : QString())
                                    .arg(sharingText(interface) + loadText(interface));
        const QStringList lines =
            benchmarkLines(interface, width) +
            lossLines(interface[QStringLiteral("findings")].toArray(), explainsAll, width);
        texts.append(heading + joined(lines));
    }
    return texts.join(QLatin1Char('\n'));
}

} // namespace cli
