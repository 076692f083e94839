// SPDX-License-Identifier: BSD-3-Clause
#include "cli/PlanReport.h"

#include "cli/Table.h"
#include "engine/CameraHandler.h"

#include <QJsonArray>

#include <algorithm>

namespace cli {

namespace {

/// Below that, frame rates count as equal.
constexpr double leastDifference = 0.005;

/// What cameras send together with their limits, and what arrives of it.
struct Prediction {
    double sentBytes = 0;
    double frames = 0;
    double lossPercent = 0;
};

using LimitOf = std::optional<std::int64_t> PlannedCamera::*;

double sentBytes(const PlannedLink& link, LimitOf limit) {
    double sum = link.otherBytes;
    for (const PlannedCamera& camera : link.plan->cameras())
        sum += camera.bytesAt(camera.*limit);
    return sum;
}

/// Bytes per second that the link carries: its speed or, where frames were lost, what arrived.
double carriedBytes(const PlannedLink& link) {
    const double nominal = link.bitsPerSecond / 8;
    double most = link.isLossy() ? 0 : sentBytes(link, &PlannedCamera::limitPlanned);
    bool hasLoss = false;
    for (const VerifiedRound& round : link.rounds) {
        most = std::max(most, round.carriedBytes + link.otherBytes);
        hasLoss = hasLoss || round.lostFrames > 0;
    }
    return hasLoss ? std::min(nominal, most) : nominal;
}

Prediction predict(const PlannedLink& link, LimitOf limit) {
    Prediction prediction;
    prediction.sentBytes = sentBytes(link, limit);
    for (const PlannedCamera& camera : link.plan->cameras())
        prediction.frames += camera.framesAt(camera.*limit);
    const double carried = carriedBytes(link);
    const double share = prediction.sentBytes > carried ? carried / prediction.sentBytes : 1;
    prediction.frames *= share;
    prediction.lossPercent = 100 * (1 - share);
    return prediction;
}

Prediction predictPlan(const PlannedLink& link) {
    return predict(link, &PlannedCamera::limitPlanned);
}

Prediction predictAutoSet(const PlannedLink& link) {
    return predict(link, &PlannedCamera::limitByAutoSet);
}

QString megabytes(double bytes) {
    return QString::number(bytes / 1e6, 'f', 1);
}

QString rates(double frames) {
    return QString::number(frames, 'f', 1);
}

QString shortage(const PlannedLink& link) {
    return QStringLiteral("No division is without loss: the lowest limits add up to %1 MB/s and "
                          "cameras that keep theirs take %2 MB/s, but %3 MB/s are usable.")
        .arg(megabytes(link.division.minima), megabytes(link.plan->fixedBytes()),
             megabytes(link.usableBytes));
}

QString comparison(const PlannedLink& link) {
    if (link.division.outcome != BandwidthPlan::Outcome::Divided)
        return shortage(link);
    const Prediction autoSet = predictAutoSet(link);
    const Prediction plan = predictPlan(link);
    if (autoSet.lossPercent > 0)
        return QStringLiteral("With Auto Set the cameras would send %1 MB/s over a link of %2 "
                              "MB/s: about %3 % of the frames would be lost.")
            .arg(megabytes(autoSet.sentBytes), megabytes(carriedBytes(link)),
                 QString::number(autoSet.lossPercent, 'f', 1));
    if (link.isLossy())
        return QStringLiteral("With Auto Set the cameras would send %1 MB/s, with the plan %2 "
                              "MB/s.")
            .arg(megabytes(autoSet.sentBytes), megabytes(plan.sentBytes));
    const QString figures =
        QStringLiteral("Auto Set would lose no frame either, and reach %1 frames per second in "
                       "all; the plan reaches %2")
            .arg(rates(autoSet.frames), rates(plan.frames));
    if (plan.frames > autoSet.frames * (1 + leastDifference))
        return figures +
               QStringLiteral(", %1 % more.")
                   .arg(100 * (plan.frames / std::max(autoSet.frames, 1e-9) - 1), 0, 'f', 1);
    return figures + (plan.frames < autoSet.frames * (1 - leastDifference)
                          ? QStringLiteral(": it keeps to margins, weights and wishes.")
                          : QStringLiteral("."));
}

QString nameOf(PlanRole role) {
    switch (role) {
    case PlanRole::Planned:
        return QStringLiteral("planned");
    case PlanRole::Locked:
        return QStringLiteral("locked");
    case PlanRole::Fixed:
        return QStringLiteral("fixed");
    case PlanRole::NotOpened:
        break;
    }
    return QStringLiteral("notOpened");
}

QString nameOf(NeedSource source) {
    switch (source) {
    case NeedSource::Search:
        return QStringLiteral("search");
    case NeedSource::Report:
        return QStringLiteral("report");
    case NeedSource::Measurement:
        return QStringLiteral("measurement");
    case NeedSource::Unknown:
        break;
    }
    return QStringLiteral("unknown");
}

QJsonValue limitValue(std::optional<std::int64_t> limit) {
    return limit ? QJsonValue(static_cast<qint64>(*limit)) : QJsonValue();
}

QJsonObject describe(const PlannedCamera& camera) {
    QJsonObject row = cameraIdentity(*camera.handler);
    row[QStringLiteral("role")] = nameOf(camera.role);
    if (camera.role == PlanRole::NotOpened)
        return row;
    row[QStringLiteral("needSource")] = nameOf(camera.source);
    row[QStringLiteral("bandwidthBytesPerSecondBefore")] = limitValue(camera.limitBefore);
    row[QStringLiteral("bandwidthBytesPerSecondAutoSet")] = limitValue(camera.limitByAutoSet);
    row[QStringLiteral("bandwidthBytesPerSecondPlan")] = limitValue(camera.limitPlanned);
    row[QStringLiteral("weight")] = camera.weight;
    if (camera.wishedFrames > 0)
        row[QStringLiteral("wishedFramesPerSecond")] = camera.wishedFrames;
    if (camera.needBytes > 0) {
        row[QStringLiteral("needBytesPerSecond")] = camera.needBytes;
        row[QStringLiteral("framesPerSecondNeed")] = camera.needFrames;
        row[QStringLiteral("framesPerSecondAutoSet")] = camera.framesAt(camera.limitByAutoSet);
        row[QStringLiteral("framesPerSecondPlan")] = camera.framesAt(camera.limitPlanned);
    }
    return row;
}

QJsonObject describe(const Prediction& prediction) {
    return {{QStringLiteral("sentBytesPerSecond"), prediction.sentBytes},
            {QStringLiteral("framesPerSecond"), prediction.frames},
            {QStringLiteral("lossPercent"), prediction.lossPercent}};
}

QJsonObject describeVerification(const PlannedLink& link) {
    QJsonArray list;
    for (const VerifiedRound& round : link.rounds)
        list.append(QJsonObject{{QStringLiteral("usableBytesPerSecond"), round.usableBytes},
                                {QStringLiteral("carriedBytesPerSecond"), round.carriedBytes},
                                {QStringLiteral("lostFrames"), round.lostFrames}});
    return {{QStringLiteral("rounds"), list},
            {QStringLiteral("isLossFree"), !link.isLossy()},
            {QStringLiteral("carriedBytesPerSecond"), link.rounds.back().carriedBytes}};
}

QStringList cameraLines(const QJsonArray& cameras) {
    constexpr double mega = 1e6;
    QJsonArray rows;
    for (const QJsonValue& camera : cameras) {
        QJsonObject row = camera.toObject();
        row[QStringLiteral("note")] = planNote(row);
        rows.append(row);
    }
    return tableLines(
        {{QStringLiteral("Camera"), QStringLiteral("id")},
         {QStringLiteral("Need MB/s"), QStringLiteral("needBytesPerSecond"), mega, 2},
         {QStringLiteral("Auto Set"), QStringLiteral("bandwidthBytesPerSecondAutoSet"), mega, 2},
         {QStringLiteral("Plan"), QStringLiteral("bandwidthBytesPerSecondPlan"), mega, 2},
         {QStringLiteral("Frames/s"), QStringLiteral("framesPerSecondNeed"), 1, 2},
         {QStringLiteral("Auto Set"), QStringLiteral("framesPerSecondAutoSet"), 1, 2},
         {QStringLiteral("Plan"), QStringLiteral("framesPerSecondPlan"), 1, 2},
         {QStringLiteral("Note"), QStringLiteral("note")}},
        rows);
}

QStringList verificationLines(const QJsonObject& verification) {
    QStringList lines;
    for (const QJsonValue& round : verification[QStringLiteral("rounds")].toArray()) {
        const double lost = round[QStringLiteral("lostFrames")].toDouble();
        lines.append(QStringLiteral("Measured with %1 MB/s usable: the link carried %2 MB/s, %3.")
                         .arg(megabytes(round[QStringLiteral("usableBytesPerSecond")].toDouble()),
                              megabytes(round[QStringLiteral("carriedBytesPerSecond")].toDouble()),
                              lost > 0 ? QStringLiteral("%1 frames were lost").arg(lost, 0, 'f', 0)
                                       : QStringLiteral("no frame was lost")));
    }
    if (!lines.isEmpty() && !verification[QStringLiteral("isLossFree")].toBool())
        lines.append(QStringLiteral("Frames are still lost: \"spanlet calibrate\" finds what the "
                                    "link carries."));
    return lines;
}

} // namespace

QJsonObject describePlan(const PlannedLink& link) {
    QJsonArray names;
    for (const HostInterface* interface : link.interfaces.interfaces)
        names.append(interface->name);
    QJsonObject document{{QStringLiteral("interfaces"), names}};
    if (!link.error.isEmpty()) {
        document[QStringLiteral("error")] = link.error;
        return document;
    }
    QJsonArray cameras;
    for (const PlannedCamera& camera : link.plan->cameras())
        cameras.append(describe(camera));
    document[QStringLiteral("bitsPerSecond")] = link.bitsPerSecond;
    document[QStringLiteral("interfaceMarginPercent")] = link.margins.interfacePercent;
    document[QStringLiteral("cameraMarginPercent")] = link.margins.cameraPercent;
    document[QStringLiteral("usableBytesPerSecond")] = std::max(link.usableBytes, 0.0);
    document[QStringLiteral("otherBytesPerSecond")] = link.otherBytes;
    document[QStringLiteral("isFeasible")] =
        link.division.outcome == BandwidthPlan::Outcome::Divided;
    document[QStringLiteral("isApplied")] = link.isApplied;
    document[QStringLiteral("cameras")] = cameras;
    document[QStringLiteral("plan")] = describe(predictPlan(link));
    document[QStringLiteral("autoSet")] = describe(predictAutoSet(link));
    document[QStringLiteral("comparison")] = comparison(link);
    if (!link.rounds.empty())
        document[QStringLiteral("verification")] = describeVerification(link);
    if (!link.failure.isEmpty())
        document[QStringLiteral("failure")] = link.failure;
    return document;
}

QString planNote(const QJsonObject& camera) {
    const QString role = camera[QStringLiteral("role")].toString();
    if (role == QLatin1String("notOpened"))
        return QStringLiteral("cannot be opened");
    const QString source = camera[QStringLiteral("needSource")].toString();
    const QString need = source == QLatin1String("measurement") ? QStringLiteral("measured")
                         : source == QLatin1String("unknown")   ? QStringLiteral("need unknown")
                                                                : QString();
    QStringList parts;
    if (role == QLatin1String("locked"))
        parts += QStringLiteral("locked, kept");
    else if (role == QLatin1String("fixed"))
        parts += camera[QStringLiteral("bandwidthBytesPerSecondPlan")].isNull()
                     ? QStringLiteral("no limit")
                     : QStringLiteral("limit not writable");
    if (!need.isEmpty())
        parts += need;
    if (camera.contains(QStringLiteral("wishedFramesPerSecond")))
        parts += QStringLiteral("wishes %1/s")
                     .arg(camera[QStringLiteral("wishedFramesPerSecond")].toDouble());
    if (camera[QStringLiteral("weight")].toDouble(1) != 1)
        parts += QStringLiteral("weight %1").arg(camera[QStringLiteral("weight")].toDouble());
    return parts.join(QStringLiteral(", "));
}

QString planText(const QJsonObject& link) {
    QStringList names;
    for (const QJsonValue& name : link[QStringLiteral("interfaces")].toArray())
        names.append(name.toString());
    const QString error = link[QStringLiteral("error")].toString();
    if (!error.isEmpty())
        return error + QLatin1Char('\n');
    const QJsonObject plan = link[QStringLiteral("plan")].toObject();
    const QString heading =
        QStringLiteral("%1: %2, %3 frames/s, %4")
            .arg(names.join(QStringLiteral(" and ")),
                 usageText(plan[QStringLiteral("sentBytesPerSecond")].toDouble(),
                           link[QStringLiteral("bitsPerSecond")].toDouble()),
                 rates(plan[QStringLiteral("framesPerSecond")].toDouble()),
                 link[QStringLiteral("isApplied")].toBool() ? QStringLiteral("applied")
                                                            : QStringLiteral("planned only"));
    return joined(QStringList{heading} + cameraLines(link[QStringLiteral("cameras")].toArray()) +
                  QStringList{link[QStringLiteral("comparison")].toString()} +
                  verificationLines(link[QStringLiteral("verification")].toObject()));
}

} // namespace cli
