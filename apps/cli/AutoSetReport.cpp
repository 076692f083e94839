// SPDX-License-Identifier: BSD-3-Clause
#include "cli/AutoSetReport.h"

#include "cli/CameraLimit.h"
#include "cli/Table.h"
#include "engine/CameraHandler.h"

#include <algorithm>

namespace cli {

namespace {

QString statusName(const CameraHandler& camera) {
    if (!camera.isOpened())
        return QStringLiteral("notOpened");
    if (camera.isLocked())
        return QStringLiteral("locked");
    switch (camera.getAutosetStatus()) {
    case AutosetStatus::BelowRequested:
        return QStringLiteral("belowRequested");
    case AutosetStatus::RequestedReached:
        return QStringLiteral("requestedReached");
    case AutosetStatus::ClampedToMaximum:
        return QStringLiteral("clampedToMaximum");
    case AutosetStatus::None:
    case AutosetStatus::NotSet:
        break;
    }
    return QStringLiteral("notSet");
}

} // namespace

QString autoSetStatusText(const QString& status) {
    if (status == QLatin1String("requestedReached"))
        return QStringLiteral("enough");
    if (status == QLatin1String("belowRequested"))
        return QStringLiteral("less than needed");
    if (status == QLatin1String("clampedToMaximum"))
        return QStringLiteral("at its maximum");
    if (status == QLatin1String("locked"))
        return QStringLiteral("locked, kept");
    return status == QLatin1String("notOpened") ? QStringLiteral("cannot be opened")
                                                : QStringLiteral("not set");
}

QJsonArray bandwidthsOf(const CameraList& cameras) {
    QJsonArray values;
    for (const auto& camera : cameras)
        values.append(camera->isOpened() ? bandwidthLimit(*camera) : QJsonValue());
    return values;
}

QJsonArray describeAutoSet(const CameraList& cameras, const QJsonArray& before) {
    const QJsonArray after = bandwidthsOf(cameras);
    QJsonArray rows;
    for (int i = 0; i < after.size(); ++i) {
        const CameraHandler& camera = *cameras[static_cast<std::size_t>(i)];
        QJsonObject row = cameraIdentity(camera);
        if (camera.isOpened()) {
            row[QStringLiteral("bandwidthBytesPerSecondBefore")] = before[i];
            row[QStringLiteral("bandwidthBytesPerSecond")] = after[i];
        }
        row[QStringLiteral("status")] = statusName(camera);
        rows.append(row);
    }
    return rows;
}

QString autoSetText(const QJsonObject& result) {
    const QString error = result[QStringLiteral("error")].toString();
    if (!error.isEmpty())
        return error + QLatin1Char('\n');
    QJsonArray rows;
    for (const QJsonValue& value : result[QStringLiteral("cameras")].toArray()) {
        QJsonObject row = value.toObject();
        row[QStringLiteral("status")] = autoSetStatusText(row[QStringLiteral("status")].toString());
        rows.append(row);
    }
    return QStringLiteral("%1: %2 in use%3\n")
               .arg(result[QStringLiteral("interface")].toString(),
                    usageText(result[QStringLiteral("bandwidthBytesPerSecond")].toDouble(),
                              result[QStringLiteral("bitsPerSecond")].toDouble()),
                    sharingText(result)) +
           joined(tableLines(
               {{QStringLiteral("Camera"), QStringLiteral("id")},
                {QStringLiteral("Name"), QStringLiteral("name")},
                {QStringLiteral("MB/s before"), QStringLiteral("bandwidthBytesPerSecondBefore"),
                 1e6, 2},
                {QStringLiteral("MB/s"), QStringLiteral("bandwidthBytesPerSecond"), 1e6, 2},
                {QStringLiteral("Status"), QStringLiteral("status")}},
               withUnlimited(rows)));
}

bool isAutoSet(const QJsonObject& result) {
    const QJsonArray rows = result[QStringLiteral("cameras")].toArray();
    const auto isOpened = [](const QJsonValue& row) {
        return row[QStringLiteral("opened")].toBool();
    };
    const auto isUnset = [](const QJsonValue& row) {
        return row[QStringLiteral("status")].toString() == QLatin1String("notSet");
    };
    return std::any_of(rows.begin(), rows.end(), isOpened) &&
           std::none_of(rows.begin(), rows.end(), isUnset);
}

} // namespace cli
