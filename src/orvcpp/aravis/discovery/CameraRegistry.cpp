// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/discovery/CameraRegistry.h"

#include "orvcpp/core/SdkLog.h"

#include <algorithm>
#include <set>

namespace orv::aravis {

namespace {

/// Searches without an answer: one answer may be lost on a congested network.
constexpr int missesUntilGone = 2;

} // namespace

CameraRegistry::CameraRegistry(CameraContext context, ProviderHost& host)
    : m_context(std::move(context)), m_host(host) {}

std::shared_ptr<CameraRegistry> CameraRegistry::make(CameraContext context, ProviderHost& host) {
    const std::shared_ptr<CameraRegistry> made(new CameraRegistry(std::move(context), host));
    made->begin();
    return made;
}

void CameraRegistry::begin() {
    m_context.changed = [kept = weak_from_this(), tell = m_context.changed](
                            const auto& camera, OrvUpdateTriggerType reason) {
        const auto registry = kept.lock();
        if (registry && reason == OrvUpdateTriggerPluggedOut)
            registry->lose(*camera);
        tell(camera, reason);
    };
    m_context.fellSilent = [kept = weak_from_this()] {
        if (const auto registry = kept.lock())
            registry->askAll();
    };
    for (const auto type : {OrvTransportLayerTypeGEV, OrvTransportLayerTypeU3V})
        m_layers.push_back(
            std::make_shared<GenicamTransportLayer>(m_context.calls, type, weak_from_this()));
}

const std::shared_ptr<GenicamTransportLayer>&
CameraRegistry::layerOf(OrvTransportLayerType type) const {
    return type == OrvTransportLayerTypeGEV ? m_layers.front() : m_layers.back();
}

std::vector<CameraRegistry::Change> CameraRegistry::update(const std::vector<CameraRecord>& records,
                                                           Discovery::Clock::time_point begun) {
    std::vector<Change> changes;
    std::set<std::string> answered;
    for (const CameraRecord& record : records)
        answered.insert(record.key());
    std::set<std::string> seen;
    const std::lock_guard lock(m_mutex);
    for (const CameraRecord& record : records) {
        Entry& entry = entryOf(record, answered);
        if (!seen.insert(record.key()).second || begun < entry.lostAt)
            continue;
        entry.misses = 0;
        entry.camera->found(record, interfaceOf(record), begun);
        if (!std::exchange(entry.isPresent, true))
            changes.emplace_back(entry.camera, OrvUpdateTriggerPluggedIn);
    }
    for (auto& [key, entry] : m_cameras) {
        // An open camera is watched by its connection.
        if (seen.count(key) > 0 || !entry.isPresent || entry.camera->isAlive() ||
            ++entry.misses < missesUntilGone)
            continue;
        entry.isPresent = false;
        changes.emplace_back(entry.camera, OrvUpdateTriggerPluggedOut);
    }
    return changes;
}

CameraRegistry::Entry& CameraRegistry::entryOf(const CameraRecord& record,
                                               const std::set<std::string>& answered) {
    const std::string key = record.key();
    const auto found = m_cameras.find(key);
    if (found != m_cameras.end())
        return found->second;
    const auto moved = std::find_if(m_cameras.begin(), m_cameras.end(), [&](const auto& known) {
        return answered.count(known.first) == 0 && !known.second.camera->isAlive() &&
               record.isSameDevice(known.second.camera->record());
    });
    if (moved != m_cameras.end()) {
        auto entry = m_cameras.extract(moved);
        entry.key() = key;
        return m_cameras.insert(std::move(entry)).position->second;
    }
    Entry entry;
    entry.camera = std::make_shared<GenicamCamera>(
        m_context, freeId(record), std::weak_ptr<OrvCPP::TransportLayer>(layerOf(record.type)));
    return m_cameras.emplace(key, std::move(entry)).first->second;
}

/// The camera's ID; with its place behind it when another camera has the ID already.
std::string CameraRegistry::freeId(const CameraRecord& record) const {
    const std::string id = record.id();
    const bool isTaken = std::any_of(m_cameras.begin(), m_cameras.end(), [&](const auto& entry) {
        return entry.second.camera->id() == id;
    });
    return isTaken ? id + '@' + record.place : id;
}

std::shared_ptr<GenicamInterface> CameraRegistry::interfaceOf(const CameraRecord& record) {
    const std::uint32_t address = record.adapter ? record.adapter->address : 0;
    const std::string key =
        std::to_string(record.type) + ':' + record.interfaceId() + ':' + std::to_string(address);
    std::shared_ptr<GenicamInterface>& interface = m_interfaces[key];
    if (!interface)
        interface = std::make_shared<GenicamInterface>(
            m_context.calls, record, std::weak_ptr<OrvCPP::TransportLayer>(layerOf(record.type)),
            weak_from_this());
    return interface;
}

void CameraRegistry::lose(const OrvCPP::Camera& camera) {
    std::string id;
    {
        const std::lock_guard lock(m_mutex);
        const auto lost = std::find_if(m_cameras.begin(), m_cameras.end(), [&](const auto& known) {
            return known.second.camera.get() == &camera;
        });
        if (lost == m_cameras.end())
            return;
        lost->second.isPresent = false;
        lost->second.lostAt = Discovery::Clock::now();
        id = lost->second.camera->id();
    }
    // Without the lock: writing a log line may block.
    logWarning(id +
               ": The camera is lost. It does not answer, was switched off and on, or is another "
               "program's now. A refresh opens it again when it is back.");
}

void CameraRegistry::askAll() const {
    for (const auto& camera : present()) {
        if (!camera->isAlive())
            m_context.threads->start([camera] { camera->ask(); });
    }
}

std::vector<std::shared_ptr<GenicamCamera>> CameraRegistry::present() const {
    std::vector<std::shared_ptr<GenicamCamera>> cameras;
    const std::lock_guard lock(m_mutex);
    for (const auto& [key, entry] : m_cameras) {
        if (entry.isPresent)
            cameras.push_back(entry.camera);
    }
    return cameras;
}

std::vector<std::shared_ptr<GenicamCamera>> CameraRegistry::all() const {
    std::vector<std::shared_ptr<GenicamCamera>> cameras;
    const std::lock_guard lock(m_mutex);
    for (const auto& [key, entry] : m_cameras)
        cameras.push_back(entry.camera);
    return cameras;
}

std::vector<std::shared_ptr<GenicamInterface>> CameraRegistry::interfaces() const {
    std::set<std::shared_ptr<OrvCPP::Interface>> used;
    for (const auto& camera : present())
        used.insert(camera->interface());
    std::vector<std::shared_ptr<GenicamInterface>> interfaces;
    const std::lock_guard lock(m_mutex);
    for (const auto& [key, interface] : m_interfaces) {
        if (used.count(interface) > 0)
            interfaces.push_back(interface);
    }
    return interfaces;
}

std::vector<std::shared_ptr<OrvCPP::Camera>>
CameraRegistry::camerasOf(OrvTransportLayerType type, const OrvCPP::Interface* interface) const {
    std::vector<std::shared_ptr<OrvCPP::Camera>> cameras;
    for (const auto& camera : present()) {
        if (camera->record().type == type && (!interface || camera->interface().get() == interface))
            cameras.push_back(m_host.publicCamera(camera));
    }
    return cameras;
}

std::vector<std::shared_ptr<OrvCPP::Interface>>
CameraRegistry::interfacesOf(OrvTransportLayerType type) const {
    std::vector<std::shared_ptr<OrvCPP::Interface>> found;
    for (const auto& interface : interfaces()) {
        if (interface->type() == type)
            found.push_back(interface);
    }
    return found;
}

} // namespace orv::aravis
