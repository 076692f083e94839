// SPDX-License-Identifier: BSD-3-Clause
#include "cli/StreamSettings.h"

#include "engine/CameraHandler.h"
#include "features/FeatureController.h"
#include "features/FeatureText.h"

#include <QJsonValue>

#include <initializer_list>
#include <variant>

namespace cli {

namespace {

QJsonValue toJson(const FeatureValue& value) {
    if (const auto integer = integerOf(value))
        return static_cast<qint64>(*integer);
    if (const auto number = numberOf(value))
        return *number;
    if (const auto text = textOf(value))
        return QString::fromStdString(*text);
    return {};
}

/// The value of the first of the features that the camera has; null when it has none.
QJsonValue read(const FeatureController& features, const char* module,
                std::initializer_list<const char*> names) {
    for (const char* name : names) {
        // Asked first, since a failed read is logged.
        if (!features.hasFeature(module, name))
            continue;
        if (const auto value = features.readFeatureValue(module, name))
            return toJson(*value);
    }
    return {};
}

} // namespace

QJsonObject streamSettings(const CameraHandler& camera) {
    // The names of the Standard Features Naming Convention, then older ones.
    const struct {
        const char* key;
        std::initializer_list<const char*> features;
    } rows[] = {
        {"firmware", {"DeviceFirmwareVersion", "DeviceVersion"}},
        {"address", {"GevCurrentIPAddress"}},
        {"packetSizeBytes", {"GevSCPSPacketSize"}},
        {"packetDelayTicks", {"GevSCPD"}},
        {"pixelFormat", {"PixelFormat"}},
        {"width", {"Width"}},
        {"height", {"Height"}},
        {"exposureMicroseconds", {"ExposureTime", "ExposureTimeAbs"}},
        {"framesPerSecond",
         {"AcquisitionResultingFrameRate", "ResultingFrameRate", "AcquisitionFrameRate",
          "AcquisitionFrameRateAbs"}},
    };
    const auto controller = camera.getFeatureController();
    QJsonObject settings;
    for (const auto& [key, features] : rows) {
        const QJsonValue value = read(*controller, cameraModule, features);
        if (!value.isNull())
            settings[QLatin1String(key)] = value;
    }
    if (!settings.contains(QStringLiteral("packetSizeBytes"))) {
        const QJsonValue size = read(*controller, firstStreamModule, {"GVSPPacketSize"});
        if (!size.isNull())
            settings[QStringLiteral("packetSizeBytes")] = size;
    }
    const QJsonValue address = settings.value(QStringLiteral("address"));
    if (address.isDouble())
        settings[QStringLiteral("address")] =
            toIpText(static_cast<std::int64_t>(address.toDouble()));
    return settings;
}

} // namespace cli
