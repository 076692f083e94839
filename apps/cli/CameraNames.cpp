// SPDX-License-Identifier: BSD-3-Clause
#include "cli/CameraNames.h"

#include "cli/Cameras.h"
#include "cli/Failure.h"
#include "engine/CameraHandler.h"
#include "engine/SystemController.h"
#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvInterfaceWrapper.h"
#include "sdk/OrvSystemWrapper.h"

#include <QJsonObject>

#include <map>

namespace cli {

CameraNames::CameraNames(const session::CameraSource& source) : m_session(source) {
    if (!m_session.isStarted())
        throw Failure(m_session.error());
}

QJsonArray CameraNames::interfaces() const {
    OrvSystemWrapper system(m_session.system());
    std::map<std::string, QJsonObject> interfaces;
    for (const auto& camera : managedCameras(system)) {
        const CameraInfo info = infoBeforeOpening(*camera);
        QJsonObject& interface = interfaces[info.interfaceName];
        interface[QStringLiteral("name")] = QString::fromStdString(info.interfaceName);
        interface[QStringLiteral("id")] = QString::fromStdString(info.interfaceId);
        QJsonArray cameras = interface[QStringLiteral("cameras")].toArray();
        cameras.append(cameraIdentity(info));
        interface[QStringLiteral("cameras")] = cameras;
    }
    QJsonArray list;
    for (const auto& [name, interface] : interfaces)
        list.append(interface);
    return list;
}

std::vector<CameraInfo> CameraNames::cameras() const {
    OrvSystemWrapper system(m_session.system());
    std::vector<CameraInfo> infos;
    for (const auto& camera : managedCameras(system))
        infos.push_back(infoBeforeOpening(*camera));
    return infos;
}

std::shared_ptr<CameraHandler> CameraNames::open(const std::string& cameraId) const {
    OrvSystemWrapper system(m_session.system());
    for (const auto& camera : managedCameras(system)) {
        std::string id;
        if (camera->GetID(id) == OrvErrorSuccess && id == cameraId)
            return system.CreateCameraHandler(camera);
    }
    return nullptr;
}

CameraInfo infoBeforeOpening(const OrvCameraWrapper& camera) {
    CameraInfo info;
    camera.GetID(info.cameraId);
    camera.GetName(info.cameraName);
    camera.GetModel(info.modelName);
    camera.GetSerialNumber(info.serialNumber);
    auto interface = std::make_shared<OrvInterfaceWrapper>();
    if (camera.GetInterface(interface) == OrvErrorSuccess) {
        interface->GetName(info.interfaceName);
        interface->GetID(info.interfaceId);
    }
    return info;
}

} // namespace cli
