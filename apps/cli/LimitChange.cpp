// SPDX-License-Identifier: BSD-3-Clause
#include "cli/LimitChange.h"

#include "cli/AutoSetReport.h"
#include "cli/AutoSetTask.h"
#include "cli/PlanReport.h"
#include "cli/PlannedLink.h"

#include <chrono>
#include <vector>

namespace cli {

namespace {

/// What triggered cameras and those without a limit send is measured for so long.
constexpr std::chrono::seconds measuredSeconds{1};

QJsonObject changedCamera(const QJsonValue& camera, const char* limitKey, const QString& note) {
    const QString before = QStringLiteral("bandwidthBytesPerSecondBefore");
    return {{QStringLiteral("id"), camera[QStringLiteral("id")]},
            {QStringLiteral("name"), camera[QStringLiteral("name")]},
            {before, camera[before]},
            {QStringLiteral("bandwidthBytesPerSecond"), camera[QLatin1String(limitKey)]},
            {QStringLiteral("note"), note}};
}

QJsonObject document(const char* method, const QJsonArray& cameras, const QJsonArray& errors) {
    return {{QStringLiteral("method"), QLatin1String(method)},
            {QStringLiteral("cameras"), cameras},
            {QStringLiteral("errors"), errors}};
}

void plan(PlannedLink& link, Cameras& cameras, Interruption& interruption) {
    if (link.error.isEmpty()) {
        surveyLink(link, cameras, measuredSeconds, interruption);
        link.division = link.plan->divide(link.usableBytes);
    }
}

/// Why the plan of a link was not applied; empty when it was.
QString applied(PlannedLink& link) {
    if (!link.error.isEmpty())
        return link.error;
    const QString names = link.interfaces.names();
    if (link.division.outcome != BandwidthPlan::Outcome::Divided)
        return QStringLiteral("%1: %2").arg(
            names, describePlan(link)[QStringLiteral("comparison")].toString());
    link.isApplied = link.plan->apply();
    return link.isApplied ? QString()
                          : QStringLiteral("%1: A camera did not take its limit.").arg(names);
}

} // namespace

QJsonObject changeByAutoSet(Cameras& cameras, const ChosenInterfaces& chosen,
                            const Arguments& arguments) {
    QJsonArray rows;
    QJsonArray errors;
    // As a list, so that one interface that cannot be divided leaves a report of the others.
    for (const QJsonValue& result :
         runAutoSet(cameras, autoSetTasks(cameras, chosen, {}, arguments), true)) {
        const QJsonValue error = result[QStringLiteral("error")];
        if (error.isString())
            errors.append(error);
        for (const QJsonValue& camera : result[QStringLiteral("cameras")].toArray())
            rows.append(
                changedCamera(camera, "bandwidthBytesPerSecond",
                              autoSetStatusText(camera[QStringLiteral("status")].toString())));
    }
    return document("autoSet", rows, errors);
}

QJsonObject changeByPlan(Cameras& cameras, const ChosenInterfaces& chosen,
                         const Arguments& arguments, Interruption& interruption) {
    std::vector<PlannedLink> links = plannedLinks(cameras, chosen, arguments);
    // All links before a limit is written, so that an interruption changes none.
    for (PlannedLink& link : links)
        plan(link, cameras, interruption);
    QJsonArray rows;
    QJsonArray errors;
    for (PlannedLink& link : links) {
        const QString error = applied(link);
        if (!error.isEmpty())
            errors.append(error);
        for (const QJsonValue& camera : describePlan(link)[QStringLiteral("cameras")].toArray())
            rows.append(changedCamera(camera,
                                      link.isApplied ? "bandwidthBytesPerSecondPlan"
                                                     : "bandwidthBytesPerSecondBefore",
                                      planNote(camera.toObject())));
    }
    return document("plan", rows, errors);
}

QString limitsText(const QJsonObject& change) {
    const bool isPlan = change[QStringLiteral("method")].toString() == QLatin1String("plan");
    QString text = isPlan ? QStringLiteral("the limits of a plan, ")
                          : QStringLiteral("the limits of Auto Set, ");
    if (change[QStringLiteral("kept")].toBool())
        return text + QStringLiteral("which were kept.");
    return text + (change[QStringLiteral("putBack")].toBool()
                       ? QStringLiteral("which were put back.")
                       : QStringLiteral("not all of which could be put back."));
}

} // namespace cli
