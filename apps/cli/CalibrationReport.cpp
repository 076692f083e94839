// SPDX-License-Identifier: BSD-3-Clause
#include "cli/CalibrationReport.h"

#include "cli/LossFindings.h"
#include "cli/Table.h"

namespace cli {

namespace {

constexpr double mega = 1e6;

QString megabytes(const QJsonValue& bytes) {
    return QString::number(bytes.toDouble() / mega, 'f', 1);
}

QJsonArray describe(const std::vector<CalibrationStep>& steps) {
    QJsonArray list;
    for (const CalibrationStep& step : steps) {
        QJsonObject row{{QStringLiteral("sentBytesPerSecond"), step.sentBytes},
                        {QStringLiteral("carriedBytesPerSecond"), step.carriedBytes},
                        {QStringLiteral("lostFrames"), step.lostFrames},
                        {QStringLiteral("hasLoss"), step.hasLoss}};
        if (step.packetsResent)
            row[QStringLiteral("packetsResent")] = *step.packetsResent;
        list.append(row);
    }
    return list;
}

QStringList stepLines(const QJsonArray& steps) {
    QJsonArray rows;
    for (int i = 0; i < steps.size(); ++i) {
        QJsonObject row = steps[i].toObject();
        row[QStringLiteral("step")] = i + 1;
        row[QStringLiteral("result")] = row[QStringLiteral("hasLoss")].toBool()
                                            ? QStringLiteral("loss")
                                            : QStringLiteral("no loss");
        rows.append(row);
    }
    return tableLines(
        {{QStringLiteral("Step"), QStringLiteral("step")},
         {QStringLiteral("Sent MB/s"), QStringLiteral("sentBytesPerSecond"), mega, 1},
         {QStringLiteral("Arrived"), QStringLiteral("carriedBytesPerSecond"), mega, 1},
         {QStringLiteral("Lost"), QStringLiteral("lostFrames")},
         {QStringLiteral("Resent"), QStringLiteral("packetsResent")},
         {QStringLiteral("Result"), QStringLiteral("result")}},
        rows);
}

QString headingOf(const QJsonObject& link, const QString& names) {
    const QJsonValue capacity = link[QStringLiteral("capacityBytesPerSecond")];
    const double bits = link[QStringLiteral("bitsPerSecond")].toDouble();
    const QString nominal =
        bits > 0 ? QStringLiteral(", nominally %1 MB/s").arg(megabytes(bits / 8)) : QString();
    if (capacity.isNull())
        return QStringLiteral("%1: no capacity found%2").arg(names, nominal);
    return QStringLiteral("%1: carries %2%3 MB/s%4")
        .arg(names,
             link[QStringLiteral("isFilled")].toBool() ? QString() : QStringLiteral("at least "),
             megabytes(capacity), nominal);
}

QStringList conclusion(const QJsonObject& link) {
    const QJsonValue capacity = link[QStringLiteral("capacityBytesPerSecond")];
    const QJsonValue begins = link[QStringLiteral("lossBeginsAtBytesPerSecond")];
    if (capacity.isNull())
        return {};
    if (begins.isNull())
        return {QStringLiteral("The cameras together do not fill the link: no frame was lost with "
                               "all that they send.")};
    QStringList lines{QStringLiteral("No loss with %1 MB/s; the loss begins at %2 MB/s at the "
                                     "latest.")
                          .arg(megabytes(capacity), megabytes(begins))};
    if (!link[QStringLiteral("isPrecise")].toBool())
        lines.append(QStringLiteral("Not known to 2 %, but to %1 %: the cameras take coarse steps, "
                                    "or the host was disturbed.")
                         .arg(100 * (begins.toDouble() / capacity.toDouble() - 1), 0, 'f', 1));
    return lines;
}

} // namespace

QJsonObject describeCalibration(const CalibratedLink& link, bool isSaved) {
    QJsonArray names;
    for (const HostInterface* interface : link.interfaces.interfaces)
        names.append(interface->name);
    QJsonObject document{{QStringLiteral("interfaces"), names}};
    if (!link.error.isEmpty())
        document[QStringLiteral("error")] = link.error;
    if (link.steps.empty())
        return document;
    const auto value = [](std::optional<double> bytes) {
        return bytes ? QJsonValue(*bytes) : QJsonValue();
    };
    document[QStringLiteral("bitsPerSecond")] = static_cast<double>(link.bitsPerSecond);
    document[QStringLiteral("capacityBytesPerSecond")] = value(link.capacity);
    document[QStringLiteral("lossBeginsAtBytesPerSecond")] = value(link.lossBegins);
    document[QStringLiteral("isFilled")] = link.lossBegins.has_value();
    document[QStringLiteral("isPrecise")] = link.isPrecise;
    document[QStringLiteral("isSaved")] = isSaved;
    document[QStringLiteral("steps")] = describe(link.steps);
    document[QStringLiteral("findings")] = link.findings;
    return document;
}

QString calibrationText(const QJsonObject& link, int width) {
    QStringList names;
    for (const QJsonValue& name : link[QStringLiteral("interfaces")].toArray())
        names.append(name.toString());
    const QString name = names.join(QStringLiteral(" and "));
    const QString error = link[QStringLiteral("error")].toString();
    if (!link.contains(QStringLiteral("steps")))
        return name + QStringLiteral(": ") + error + QLatin1Char('\n');
    QStringList lines{headingOf(link, name)};
    lines += stepLines(link[QStringLiteral("steps")].toArray());
    lines += conclusion(link);
    if (!error.isEmpty())
        lines += error;
    if (link[QStringLiteral("isSaved")].toBool())
        lines += QStringLiteral("Saved: plan and autoset use it from now on, until --forget.");
    lines += lossLines(link[QStringLiteral("findings")].toArray(), false, width);
    return joined(lines);
}

} // namespace cli
