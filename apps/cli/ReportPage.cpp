// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ReportPage.h"

#include "cli/Benchmark.h"
#include "cli/BenchmarkTable.h"
#include "cli/CameraLimit.h"
#include "cli/LimitChange.h"
#include "cli/Table.h"

#include <QHash>
#include <QJsonArray>

#include <algorithm>

namespace cli {

namespace {

constexpr double mega = 1e6;
constexpr double megabytesOfBits = 8e6;

/// Without columns that are empty.
page::Table tableOf(const QString& caption, const TableCells& cells) {
    page::Table table{
        caption, {}, std::vector<QStringList>(static_cast<std::size_t>(cells.rows.size() - 1)), {}};
    for (int column = 0; column < cells.isNumber.size(); ++column) {
        const bool isEmpty =
            std::all_of(cells.rows.begin() + 1, cells.rows.end(),
                        [column](const QStringList& row) { return row[column].isEmpty(); });
        if (isEmpty)
            continue;
        table.headings += cells.rows[0][column];
        table.isNumber.push_back(cells.isNumber[column]);
        for (int row = 1; row < cells.rows.size(); ++row)
            table.rows[static_cast<std::size_t>(row - 1)] += cells.rows[row][column];
    }
    return table;
}

QJsonArray camerasOf(const QJsonObject& report) {
    QJsonArray all;
    for (const QJsonValue& interface : report[QStringLiteral("interfaces")].toArray()) {
        for (const QJsonValue& camera : interface[QStringLiteral("cameras")].toArray()) {
            QJsonObject row = camera.toObject();
            const QJsonObject settings = row[QStringLiteral("settings")].toObject();
            for (auto setting = settings.begin(); setting != settings.end(); ++setting)
                row[setting.key()] = setting.value();
            all.append(row);
        }
    }
    return all;
}

QString labelOf(const QJsonValue& camera) {
    const QString id = camera[QStringLiteral("id")].toString();
    const QString name = camera[QStringLiteral("name")].toString();
    return name.isEmpty() || name == id ? id : QStringLiteral("%1 %2").arg(id, name);
}

page::Section runSection(const QJsonObject& report) {
    const QJsonValue host = report[QStringLiteral("host")];
    const QJsonValue versions = report[QStringLiteral("versions")];
    const auto text = [](const QJsonValue& object, const char* key) {
        return object[QLatin1String(key)].toString();
    };
    const QJsonObject change = report[QStringLiteral("change")].toObject();
    page::Table table{QStringLiteral("Host, time and versions"),
                      {QStringLiteral("What"), QStringLiteral("Value")},
                      {},
                      {false, false}};
    const std::pair<const char*, QString> rows[] = {
        {"Date", text(report, "date")},
        {"Host", text(host, "name")},
        {"System", QStringLiteral("%1, %2, %3")
                       .arg(text(host, "system"), text(host, "kernel"), text(host, "processor"))},
        {"Cameras", report[QStringLiteral("simulated")].toBool() ? QStringLiteral("simulated")
                                                                 : QStringLiteral("real")},
        {"Spanlet", text(versions, "spanlet")},
        {"Qt", text(versions, "qt")},
        {"Camera library", text(versions, "cameraLibrary")},
        {"Limits", change.isEmpty() ? QStringLiteral("not changed") : limitsText(change)},
    };
    for (const auto& [what, value] : rows)
        table.rows.push_back({QLatin1String(what), value});
    return {QStringLiteral("Test"), {table}};
}

page::Section interfaceSection(const QJsonObject& report) {
    QJsonArray rows;
    for (const QJsonValue& interface : report[QStringLiteral("interfaces")].toArray()) {
        QJsonObject row = interface.toObject();
        QStringList others;
        for (const QJsonValue& other : row[QStringLiteral("sharesLinkWith")].toArray())
            others += other.toString();
        row[QStringLiteral("sharing")] = others.join(QStringLiteral(", "));
        if (row[QStringLiteral("bitsPerSecond")].toDouble() <= 0)
            row[QStringLiteral("bitsPerSecond")] = QStringLiteral("unknown");
        rows.append(row);
    }
    const QVector<Column> columns{
        {QStringLiteral("Interface"), QStringLiteral("name")},
        {QStringLiteral("ID"), QStringLiteral("id")},
        {QStringLiteral("Type"), QStringLiteral("type")},
        {QStringLiteral("Speed MB/s"), QStringLiteral("bitsPerSecond"), megabytesOfBits, 1},
        {QStringLiteral("Limits MB/s"), QStringLiteral("bandwidthBytesPerSecond"), mega, 1},
        {QStringLiteral("Others MB/s"), QStringLiteral("otherBytesPerSecond"), mega, 1},
        {QStringLiteral("Shares its link with"), QStringLiteral("sharing")},
    };
    return {QStringLiteral("Interfaces"),
            {tableOf(QStringLiteral("Interfaces, and the sum of their cameras' limits before the "
                                    "test"),
                     tableCells(columns, rows))}};
}

page::Section cameraSection(const QJsonObject& report) {
    const QJsonArray cameras = camerasOf(report);
    const QVector<Column> identity{
        {QStringLiteral("Camera"), QStringLiteral("id")},
        {QStringLiteral("Name"), QStringLiteral("name")},
        {QStringLiteral("Model"), QStringLiteral("model")},
        {QStringLiteral("Serial number"), QStringLiteral("serialNumber")},
        {QStringLiteral("Firmware"), QStringLiteral("firmware")},
        {QStringLiteral("Address"), QStringLiteral("address")},
        {QStringLiteral("Port"), QStringLiteral("port")},
    };
    const QVector<Column> settings{
        {QStringLiteral("Camera"), QStringLiteral("id")},
        {QStringLiteral("Pixel format"), QStringLiteral("pixelFormat")},
        {QStringLiteral("Width"), QStringLiteral("width")},
        {QStringLiteral("Height"), QStringLiteral("height")},
        {QStringLiteral("Exposure ms"), QStringLiteral("exposureMicroseconds"), 1e3, 2},
        {QStringLiteral("Frames/s"), QStringLiteral("framesPerSecond"), 1, 2},
        {QStringLiteral("Triggered"), QStringLiteral("triggered")},
        {QStringLiteral("Packet bytes"), QStringLiteral("packetSizeBytes")},
        {QStringLiteral("Packet delay (ticks)"), QStringLiteral("packetDelayTicks")},
        {QStringLiteral("Limit MB/s"), QStringLiteral("bandwidthBytesPerSecond"), mega, 2},
    };
    page::Section section{
        QStringLiteral("Cameras"),
        {tableOf(QStringLiteral("Names, firmware and addresses"), tableCells(identity, cameras)),
         tableOf(QStringLiteral("Settings before the test"),
                 tableCells(settings, withUnlimited(cameras)))}};
    page::Notes warnings;
    for (const QJsonValue& camera : cameras) {
        const QString warning = camera[QStringLiteral("warning")].toString();
        if (!warning.isEmpty())
            warnings.notes.push_back(
                {QStringLiteral("%1: %2").arg(labelOf(camera), warning), {}, {}});
    }
    if (!warnings.notes.empty())
        section.blocks.emplace_back(warnings);
    return section;
}

chart::StackedChart chartOf(const QJsonValue& rates, const QString& title) {
    chart::StackedChart chart;
    chart.title =
        QStringLiteral("%1: %2").arg(rates[QStringLiteral("interface")].toString(), title);
    for (const QJsonValue& time : rates[QStringLiteral("seconds")].toArray())
        chart.seconds.push_back(time.toDouble());
    for (const QJsonValue& camera : rates[QStringLiteral("cameras")].toArray()) {
        chart::Series series{labelOf(camera), {}, {}};
        for (const QJsonValue& rate : camera[QStringLiteral("bytesPerSecond")].toArray())
            series.megabytesPerSecond.push_back(rate.toDouble() / mega);
        const QJsonArray lost = camera[QStringLiteral("lostFrames")].toArray();
        for (int i = 0; i < lost.size(); ++i) {
            if (lost[i].toDouble() > 0)
                series.lostAtSeconds.push_back(chart.seconds[static_cast<std::size_t>(i)]);
        }
        chart.series.push_back(series);
    }
    const QJsonValue speed = rates[QStringLiteral("bitsPerSecond")];
    if (speed.isDouble())
        chart.linkMegabytesPerSecond = speed.toDouble() / megabytesOfBits;
    return chart;
}

page::Notes lossNotes(const QJsonValue& interface, bool explainsAll) {
    page::Notes notes;
    for (const QJsonValue& finding : interface[QStringLiteral("findings")].toArray()) {
        const bool isRepaired = finding[QStringLiteral("repaired")].toBool();
        if (isRepaired && !explainsAll)
            continue;
        notes.notes.push_back(
            {QStringLiteral("%1: %2%3. %4")
                 .arg(finding[QStringLiteral("camera")].toString(QStringLiteral("All cameras")),
                      finding[QStringLiteral("place")].toString(),
                      isRepaired ? QStringLiteral(", no frame lost") : QString(),
                      finding[QStringLiteral("evidence")].toString()),
             finding[QStringLiteral("cure")].toString(),
             {}});
    }
    return notes;
}

page::Table packetSizeTable(const QJsonArray& rows) {
    const QVector<Column> columns{
        {QStringLiteral("Camera"), QStringLiteral("id")},
        {QStringLiteral("Packet bytes"), QStringLiteral("packetSizeBytes")},
    };
    return tableOf(QStringLiteral("Packet sizes, which were adjusted before this measurement"),
                   tableCells(columns, rows));
}

page::Section measurementSection(const QJsonValue& measurement, bool explainsAll) {
    const QJsonObject result = measurement[QStringLiteral("result")].toObject();
    const QString name = measurement[QStringLiteral("name")].toString();
    const QString time =
        QStringLiteral("%1 s%2")
            .arg(result[QStringLiteral("seconds")].toDouble(), 0, 'f', 1)
            .arg(result[QStringLiteral("interrupted")].toBool() ? QStringLiteral(", interrupted")
                                                                : QString());
    page::Section section{QStringLiteral("Measurement: %1").arg(name), {}};
    const QJsonArray rates = measurement[QStringLiteral("rates")].toArray();
    const QJsonArray interfaces = interfacesOf(result);
    for (int i = 0; i < interfaces.size(); ++i) {
        if (i < rates.size())
            section.blocks.emplace_back(chartOf(rates[i], name));
        section.blocks.emplace_back(
            tableOf(QStringLiteral("%1: figures of %2")
                        .arg(interfaces[i][QStringLiteral("interface")].toString(), time),
                    benchmarkCells(interfaces[i].toObject())));
        const page::Notes notes = lossNotes(interfaces[i], explainsAll);
        if (notes.notes.empty())
            continue;
        section.blocks.emplace_back(page::Paragraph{QStringLiteral("Where frames were lost:")});
        section.blocks.emplace_back(notes);
    }
    const QJsonArray packetSizes = measurement[QStringLiteral("packetSizes")].toArray();
    if (!packetSizes.isEmpty())
        section.blocks.emplace_back(packetSizeTable(packetSizes));
    return section;
}

/// Adds the figures of a measurement to the row of each camera, by its ID.
QJsonArray withFigures(const QJsonArray& rows, const QJsonValue& measurement,
                       const QString& suffix) {
    QHash<QString, QJsonValue> figures;
    for (const QJsonValue& interface :
         interfacesOf(measurement[QStringLiteral("result")].toObject())) {
        for (const QJsonValue& camera : interface[QStringLiteral("cameras")].toArray())
            figures[camera[QStringLiteral("id")].toString()] = camera;
    }
    QJsonArray result;
    for (const QJsonValue& each : rows) {
        QJsonObject row = each.toObject();
        const QJsonValue camera = figures.value(row[QStringLiteral("id")].toString());
        for (const char* key : {"framesPerSecond", "bytesPerSecond", "lossPercent"})
            row[QLatin1String(key) + suffix] = camera[QLatin1String(key)];
        result.append(row);
    }
    return result;
}

page::Section comparisonSection(const QJsonObject& change, const QJsonArray& measurements) {
    QJsonArray rows = withUnlimited(change[QStringLiteral("cameras")].toArray());
    rows = withFigures(rows, measurements.first(), QStringLiteral("Before"));
    if (measurements.size() > 1)
        rows = withFigures(rows, measurements.last(), QStringLiteral("After"));
    const QVector<Column> columns{
        {QStringLiteral("Camera"), QStringLiteral("id")},
        {QStringLiteral("Name"), QStringLiteral("name")},
        {QStringLiteral("Limit before, MB/s"), QStringLiteral("bandwidthBytesPerSecondBefore"),
         mega, 2},
        {QStringLiteral("Limit after, MB/s"), QStringLiteral("bandwidthBytesPerSecond"), mega, 2},
        {QStringLiteral("Frames/s before"), QStringLiteral("framesPerSecondBefore"), 1, 2},
        {QStringLiteral("Frames/s after"), QStringLiteral("framesPerSecondAfter"), 1, 2},
        {QStringLiteral("Loss before, %"), QStringLiteral("lossPercentBefore"), 1, 2},
        {QStringLiteral("Loss after, %"), QStringLiteral("lossPercentAfter"), 1, 2},
        {QStringLiteral("Note"), QStringLiteral("note")},
    };
    page::Section section{
        QStringLiteral("Before and after"),
        {page::Paragraph{QStringLiteral("After: with %1").arg(limitsText(change))},
         tableOf(QStringLiteral("Limits and figures before and after the change"),
                 tableCells(columns, rows))}};
    page::Notes errors;
    for (const QJsonValue& error : change[QStringLiteral("errors")].toArray())
        errors.notes.push_back({error.toString(), {}, {}});
    if (!errors.notes.empty())
        section.blocks.emplace_back(errors);
    return section;
}

page::Section adviceSection(const QJsonObject& report) {
    page::Section section{QStringLiteral("Advice for this host"), {}};
    page::Notes notes;
    for (const QJsonValue& finding : report[QStringLiteral("findings")].toArray()) {
        const QString evidence = finding[QStringLiteral("evidence")].toString();
        notes.notes.push_back(
            {QStringLiteral("%1: %2: %3")
                 .arg(finding[QStringLiteral("severity")].toString(),
                      finding[QStringLiteral("subject")].toString(),
                      finding[QStringLiteral("text")].toString()),
             evidence.isEmpty() ? QString() : QStringLiteral("Read: %1").arg(evidence),
             finding[QStringLiteral("cure")].toString()});
    }
    if (notes.notes.empty())
        section.blocks.emplace_back(
            page::Paragraph{QStringLiteral("The checks found nothing that costs frames.")});
    else
        section.blocks.emplace_back(notes);
    const QString unread = report[QStringLiteral("unread")].toString();
    if (!unread.isEmpty())
        section.blocks.emplace_back(page::Paragraph{unread});
    return section;
}

} // namespace

page::Page reportPage(const QJsonObject& report, bool explainsAll) {
    page::Page page;
    page.title = QStringLiteral("Acceptance test of the cameras of %1")
                     .arg(report[QStringLiteral("host")][QStringLiteral("name")].toString());
    page.isGood = report[QStringLiteral("accepted")].toBool();
    page.outcome = report[QStringLiteral("verdict")].toString();
    const QJsonArray measurements = report[QStringLiteral("measurements")].toArray();
    const QJsonObject change = report[QStringLiteral("change")].toObject();
    page.sections = {runSection(report), interfaceSection(report), cameraSection(report)};
    if (!change.isEmpty())
        page.sections.push_back(comparisonSection(change, measurements));
    for (const QJsonValue& measurement : measurements)
        page.sections.push_back(measurementSection(measurement, explainsAll));
    page.sections.push_back(adviceSection(report));
    return page;
}

} // namespace cli
