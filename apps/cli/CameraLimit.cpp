// SPDX-License-Identifier: BSD-3-Clause
#include "cli/CameraLimit.h"

#include "engine/CameraHandler.h"
#include "features/BandwidthLimit.h"

#include <QJsonObject>

namespace cli {

QJsonValue bandwidthLimit(const CameraHandler& camera) {
    // Asked first: the handler logs an error for a camera without a limit.
    if (!BandwidthLimit(camera.getFeatureController()).find())
        return {};
    return static_cast<qint64>(camera.getBandwidth());
}

double sumOfLimits(const CameraList& cameras) {
    double sum = 0;
    for (const auto& camera : cameras)
        sum += camera->isOpened() ? bandwidthLimit(*camera).toDouble() : 0;
    return sum;
}

QJsonArray withUnlimited(const QJsonArray& rows) {
    QJsonArray result;
    for (const QJsonValue& value : rows) {
        QJsonObject row = value.toObject();
        for (const char* key : {"bandwidthBytesPerSecond", "bandwidthBytesPerSecondBefore"}) {
            if (row.contains(QLatin1String(key)) && row[QLatin1String(key)].isNull())
                row[QLatin1String(key)] = QStringLiteral("unlimited");
        }
        result.append(row);
    }
    return result;
}

} // namespace cli
