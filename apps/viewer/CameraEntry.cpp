// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/CameraEntry.h"

#include "OrvCPP/OrvSystem.h"
#include "viewer/Sdk.h"

#include <QHash>

namespace viewer {

namespace {

QString interfaceName(const OrvCPP::Camera& camera) {
    std::shared_ptr<OrvCPP::Interface> found;
    if (camera.GetInterface(found) != OrvErrorSuccess || !found)
        return {};
    return sdkText(
        [&](char* buffer, std::uint32_t& length) { return found->GetName(buffer, length); });
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
    entry.id = sdkText(
        [&](char* buffer, std::uint32_t& length) { return camera->GetID(buffer, length, true); });
    entry.name = sdkText(
        [&](char* buffer, std::uint32_t& length) { return camera->GetName(buffer, length); });
    entry.model = sdkText(
        [&](char* buffer, std::uint32_t& length) { return camera->GetModel(buffer, length); });
    entry.serialNumber = sdkText([&](char* buffer, std::uint32_t& length) {
        return camera->GetSerialNumber(buffer, length);
    });
    if (entry.name.isEmpty())
        entry.name = entry.model.isEmpty() ? entry.id : entry.model;
    entry.interfaceName = interfaceName(*camera);
    entry.access = permittedAccess(*camera);
    return entry;
}

/// Puts a text of their own behind the names of cameras that have the same one.
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
    const auto get = [&system](std::shared_ptr<OrvCPP::Camera>* cameras, std::uint32_t& count) {
        return system.GetCameras(cameras, count);
    };
    for (const auto& camera : sdkList<OrvCPP::Camera>(get))
        entries.push_back(describe(camera));
    // Most cameras have no name but their model's, and serial numbers are each maker's own.
    tellApart(entries, &CameraEntry::serialNumber);
    tellApart(entries, &CameraEntry::id);
    return entries;
}

} // namespace viewer
