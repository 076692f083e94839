// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Cameras.h"

#include "cli/CameraLimit.h"
#include "cli/Failure.h"
#include "cli/NameChoice.h"
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SafetyMargins.h"
#include "logging/Log.h"
#include "sdk/SimulatedHost.h"

#include <QJsonArray>

#include <map>

namespace cli {

namespace {

QVector<Names> namesOf(const CameraList& cameras) {
    QVector<Names> names;
    for (const auto& camera : cameras) {
        const CameraInfo info = camera->getCameraInfo();
        names.append(cameraNames(info.cameraId, info.cameraName, info.serialNumber));
    }
    return names;
}

} // namespace

Cameras::Cameras(const session::CameraSource& source) : m_session(source) {
    if (!m_session.isStarted())
        throw Failure(m_session.error());
    m_controller = makeSystemController(m_session.system());
    int index = 0;
    for (const CameraList& cameras : m_controller->enumerate()) {
        const CameraInfo info = cameras.front()->getCameraInfo();
        HostInterface interface;
        interface.index = index++;
        interface.name = QString::fromStdString(info.interfaceName);
        interface.id = QString::fromStdString(info.interfaceId);
        interface.cameras = cameras;
        m_interfaces.push_back(interface);
    }
    findSharing();
    findOtherTraffic();
}

void Cameras::findOtherTraffic() {
    const SimulatedHost host = simulatedHost(m_session.system());
    for (HostInterface& interface : m_interfaces) {
        for (const auto& camera : interface.cameras) {
            for (const SimulatedTraffic& traffic : host.otherTraffic) {
                if (traffic.cameraId == camera->getCameraInfo().cameraId)
                    interface.otherTraffic += static_cast<double>(traffic.bytesPerSecond);
            }
        }
    }
}

void Cameras::findSharing() {
    std::map<std::string, std::vector<HostInterface*>> links;
    for (HostInterface& interface : m_interfaces) {
        const std::string link = m_controller->getInterfaceLink(interface.name.toStdString());
        if (!link.empty())
            links[link].push_back(&interface);
    }
    for (const auto& [link, interfaces] : links) {
        for (HostInterface* interface : interfaces) {
            for (const HostInterface* other : interfaces) {
                if (other != interface)
                    interface->sharing.append(other->name);
            }
        }
    }
}

std::vector<const HostInterface*> Cameras::onLinkOf(const HostInterface& interface) const {
    std::vector<const HostInterface*> found;
    for (const HostInterface& each : m_interfaces) {
        if (&each == &interface || interface.sharing.contains(each.name))
            found.push_back(&each);
    }
    return found;
}

const HostInterface& Cameras::findInterface(const QString& wanted) const {
    QVector<Names> names;
    for (const HostInterface& interface : m_interfaces)
        names.append({interface.name, interface.id});
    return m_interfaces[chooseByName(QStringLiteral("interface"), names, wanted)];
}

std::shared_ptr<CameraHandler> Cameras::findCamera(const QString& wanted) const {
    CameraList all;
    for (const HostInterface& interface : m_interfaces)
        all.insert(all.end(), interface.cameras.begin(), interface.cameras.end());
    return cli::findCamera(all, wanted);
}

void Cameras::warnOfExcess(const HostInterface& interface) const {
    const auto type = m_controller->getInterfaceType(interface.name.toStdString());
    warnOfExcess(interface, recommendedMargins(type).interfacePercent);
}

void Cameras::warnOfExcess(const HostInterface& interface, double marginPercent) const {
    QStringList names;
    double limits = 0;
    double others = 0;
    for (const HostInterface* each : onLinkOf(interface)) {
        names.append(each->name);
        limits += sumOfLimits(each->cameras);
        others += each->otherTraffic;
    }
    const auto bitsPerSecond = m_controller->getInterfaceSpeed(interface.name.toStdString());
    const double bytesPerSecond = static_cast<double>(bitsPerSecond) / 8;
    const double usable = usableBytesPerSecond(bitsPerSecond, marginPercent);
    if (bitsPerSecond == 0 || limits + others <= usable * divisionTolerance)
        return;
    const auto megabytes = [](double bytes) {
        return QString::number(bytes / 1e6, 'f', 1);
    };
    const QString traffic =
        others > 0 ? QStringLiteral(", and others send %1 MB/s").arg(megabytes(others)) : QString();
    logWarning(QStringLiteral("%1: The limits of the cameras add up to %2 MB/s%6, but only %3 MB/s "
                              "are usable (%4 MB/s less a margin of %5 %).")
                   .arg(names.join(QStringLiteral(" and ")), megabytes(limits), megabytes(usable),
                        megabytes(bytesPerSecond), QString::number(marginPercent), traffic)
                   .toStdString());
}

std::shared_ptr<CameraHandler> findCamera(const CameraList& cameras, const QString& wanted) {
    return cameras[chooseByName(QStringLiteral("camera"), namesOf(cameras), wanted)];
}

CameraList findCameras(const CameraList& cameras, const QString& wanted) {
    if (isCalled(namesOf(cameras), wanted))
        return {findCamera(cameras, wanted)};
    CameraList found;
    for (const QString& name : wanted.split(QLatin1Char(',')))
        found.push_back(findCamera(cameras, name.trimmed()));
    return found;
}

void addSharing(QJsonObject& document, const HostInterface& interface) {
    if (!interface.sharing.isEmpty())
        document[QStringLiteral("sharesLinkWith")] = QJsonArray::fromStringList(interface.sharing);
}

QString sharingText(const QJsonObject& document) {
    QStringList others;
    for (const QJsonValue& name : document[QStringLiteral("sharesLinkWith")].toArray())
        others.append(name.toString());
    return others.isEmpty()
               ? QString()
               : QStringLiteral(", shares its link with %1").arg(others.join(QStringLiteral(", ")));
}

QString cameraId(const CameraHandler& camera) {
    return QString::fromStdString(camera.getCameraInfo().cameraId);
}

void requireOpened(const CameraHandler& camera) {
    if (!camera.isOpened())
        throw Failure(QStringLiteral("%1: %2").arg(
            cameraId(camera), QString::fromStdString(camera.getWarningText())));
}

QJsonObject cameraIdentity(const CameraInfo& info) {
    return {
        {QStringLiteral("id"), QString::fromStdString(info.cameraId)},
        {QStringLiteral("name"), QString::fromStdString(info.cameraName)},
        {QStringLiteral("model"), QString::fromStdString(info.modelName)},
        {QStringLiteral("serialNumber"), QString::fromStdString(info.serialNumber)},
    };
}

QJsonObject cameraIdentity(const CameraHandler& camera) {
    QJsonObject identity = cameraIdentity(camera.getCameraInfo());
    identity[QStringLiteral("opened")] = camera.isOpened();
    return identity;
}

} // namespace cli
