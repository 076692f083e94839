// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/CameraEntry.h"

#include "OrvCPP/OrvSystem.h"
#include "sdk/SdkQuery.h"

#include <QHash>

namespace viewer {

namespace {

/// One of the SDK's texts; empty when the SDK answers an error.
template <class Object, class Ask> QString textOf(const Object& object, const Ask& ask) {
    std::string text;
    SdkQuery::text(&object, text, ask);
    return QString::fromStdString(text);
}

void describeInterface(CameraEntry& entry) {
    std::shared_ptr<OrvCPP::Interface> found;
    if (entry.camera->GetInterface(found) != OrvErrorSuccess || !found)
        return;
    entry.interfaceName = textOf(*found, &OrvCPP::Interface::GetName);
    entry.interfaceId = textOf(*found, &OrvCPP::Interface::GetID);
    found->GetType(entry.type);
}

CameraAccess permittedAccess(const OrvCPP::Camera& camera) {
    OrvAccessModeType modes = OrvAccessModeNone;
    if (camera.GetPermittedAccess(modes) == OrvErrorNotFound)
        return CameraAccess::NoAnswer;
    return (modes & OrvAccessModeFull) != 0 ? CameraAccess::Available : CameraAccess::InUse;
}

CameraEntry describe(const std::shared_ptr<OrvCPP::Camera>& camera) {
    CameraEntry entry;
    entry.camera = camera;
    entry.id = textOf(*camera, [](const auto& sdkCamera, char* buffer, std::uint32_t& length) {
        return sdkCamera.GetID(buffer, length, true);
    });
    entry.name = textOf(*camera, &OrvCPP::Camera::GetName);
    entry.model = textOf(*camera, &OrvCPP::Camera::GetModel);
    entry.serialNumber = textOf(*camera, &OrvCPP::Camera::GetSerialNumber);
    if (entry.name.isEmpty())
        entry.name = entry.model.isEmpty() ? entry.id : entry.model;
    describeInterface(entry);
    entry.access = permittedAccess(*camera);
    return entry;
}

/// Appends a text of the camera to names that several cameras have.
void tellApart(std::vector<CameraEntry>& entries, QString CameraEntry::*text) {
    QHash<QString, int> counts;
    for (const CameraEntry& entry : entries)
        ++counts[entry.name];
    for (CameraEntry& entry : entries) {
        if (counts[entry.name] > 1 && !(entry.*text).isEmpty())
            entry.name = QStringLiteral("%1 (%2)").arg(entry.name, entry.*text);
    }
}

} // namespace

std::vector<CameraEntry> findCameras(OrvCPP::OrvSystem& system) {
    std::vector<CameraEntry> entries;
    std::vector<std::shared_ptr<OrvCPP::Camera>> cameras;
    SdkQuery::elements(&system, cameras, &OrvCPP::OrvSystem::GetCameras);
    for (const auto& camera : cameras)
        entries.push_back(describe(camera));
    // Most cameras have their model's name, and two makers may use the same serial number.
    tellApart(entries, &CameraEntry::serialNumber);
    tellApart(entries, &CameraEntry::id);
    return entries;
}

} // namespace viewer
