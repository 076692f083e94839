// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/CameraEntry.h"

#include "OrvCPP/OrvSystem.h"
#include "viewer/Sdk.h"

namespace viewer {

namespace {

QString interfaceName(const OrvCPP::Camera& camera) {
    std::shared_ptr<OrvCPP::Interface> found;
    if (camera.GetInterface(found) != OrvErrorSuccess || !found) {
        return {};
    }
    return sdkText(
        [&](char* buffer, std::uint32_t& length) { return found->GetName(buffer, length); });
}

CameraAccess permittedAccess(const OrvCPP::Camera& camera) {
    OrvAccessModeType modes = OrvAccessModeNone;
    camera.GetPermittedAccess(modes);
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
    if (entry.name.isEmpty()) {
        entry.name = entry.model.isEmpty() ? entry.id : entry.model;
    }
    entry.interfaceName = interfaceName(*camera);
    entry.access = permittedAccess(*camera);
    return entry;
}

} // namespace

std::vector<CameraEntry> findCameras(OrvCPP::OrvSystem& system) {
    std::vector<CameraEntry> entries;
    const auto get = [&system](std::shared_ptr<OrvCPP::Camera>* cameras, std::uint32_t& count) {
        return system.GetCameras(cameras, count);
    };
    for (const auto& camera : sdkList<OrvCPP::Camera>(get)) {
        entries.push_back(describe(camera));
    }
    return entries;
}

} // namespace viewer
