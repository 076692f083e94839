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
    for (const auto& camera : cameras) {
        if (!camera->isOpened())
            continue;
        BandwidthLimit limit(camera->getFeatureController());
        const bool isOff = limit.find() && limit.isOff();
        sum += isOff ? static_cast<double>(camera->readNeed().bytesPerSecond)
                     : bandwidthLimit(*camera).toDouble();
    }
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
