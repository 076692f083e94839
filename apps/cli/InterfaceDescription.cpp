// SPDX-License-Identifier: BSD-3-Clause
#include "cli/InterfaceDescription.h"

#include "cli/CameraLimit.h"
#include "engine/CameraHandler.h"

#include <QJsonArray>

namespace cli {

namespace {

QJsonObject describeCamera(const CameraHandler& camera) {
    QJsonObject row = cameraIdentity(camera);
    const CameraInfo info = camera.getCameraInfo();
    row[QStringLiteral("port")] = QString::fromStdString(info.portPath);
    row[QStringLiteral("warning")] = QString::fromStdString(camera.getWarningText());
    if (camera.isOpened()) {
        row[QStringLiteral("bandwidthBytesPerSecond")] = bandwidthLimit(camera);
        row[QStringLiteral("payloadBytes")] = static_cast<qint64>(camera.getPayloadSize());
        row[QStringLiteral("triggered")] = camera.isTriggered();
    }
    return row;
}

QString typeName(OrvTransportLayerType type) {
    const auto found = transportLayerTypeNames().find(type);
    return found == transportLayerTypeNames().end() ? QString()
                                                    : QString::fromStdString(found->second);
}

} // namespace

QJsonObject describeInterface(Cameras& all, const HostInterface& interface) {
    const SystemController& controller = all.controller();
    const std::string key = interface.name.toStdString();
    QJsonArray cameras;
    for (const auto& camera : interface.cameras)
        cameras.append(describeCamera(*camera));
    const auto bitsPerSecond = static_cast<qint64>(controller.getInterfaceSpeed(key));
    const OrvTransportLayerType type = controller.getInterfaceType(key);
    all.warnOfExcess(interface);
    QJsonObject document{
        {QStringLiteral("name"), interface.name},
        {QStringLiteral("id"), interface.id},
        {QStringLiteral("type"), typeName(type)},
        {QStringLiteral("bitsPerSecond"), bitsPerSecond},
        {QStringLiteral("bandwidthBytesPerSecond"), sumOfLimits(interface.cameras)},
        {QStringLiteral("cameras"), cameras},
    };
    if (interface.otherTraffic > 0)
        document[QStringLiteral("otherBytesPerSecond")] = interface.otherTraffic;
    addSharing(document, interface);
    return document;
}

} // namespace cli
