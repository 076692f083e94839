// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/GenicamInterface.h"
#include "orvcpp/aravis/GenicamTransportLayer.h"
#include "orvcpp/aravis/device/GenicamCamera.h"
#include "orvcpp/aravis/discovery/Discovery.h"
#include "orvcpp/core/Provider.h"

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace orv::aravis {

/// Keeps the objects of all cameras found so far, of their interfaces and of the transport layers,
/// and which of the cameras are present. Thread-safe.
class CameraRegistry final : public std::enable_shared_from_this<CameraRegistry> {
public:
    using Change = std::pair<std::shared_ptr<GenicamCamera>, OrvUpdateTriggerType>;

    static std::shared_ptr<CameraRegistry> make(CameraContext context, ProviderHost& host);

    /// Applies the result of a search that began at \p begun; answers the changes.
    std::vector<Change> update(const std::vector<CameraRecord>& records,
                               Discovery::Clock::time_point begun);

    std::vector<std::shared_ptr<GenicamCamera>> present() const;
    std::vector<std::shared_ptr<GenicamCamera>> all() const;
    std::vector<std::shared_ptr<GenicamInterface>> interfaces() const;
    const std::vector<std::shared_ptr<GenicamTransportLayer>>& layers() const { return m_layers; }

    /// The present cameras of one kind, as ProviderHost::publicCamera() answers them; only those of
    /// \p interface unless it is null.
    std::vector<std::shared_ptr<OrvCPP::Camera>>
    camerasOf(OrvTransportLayerType type, const OrvCPP::Interface* interface) const;
    std::vector<std::shared_ptr<OrvCPP::Interface>> interfacesOf(OrvTransportLayerType type) const;

private:
    struct Entry {
        std::shared_ptr<GenicamCamera> camera;
        bool isPresent = false;
        /// Consecutive searches that have not found it.
        int misses = 0;
        Discovery::Clock::time_point lostAt{};
    };

    CameraRegistry(CameraContext context, ProviderHost& host);
    void begin();
    /// The camera is absent until a search that begins later finds it.
    void lose(const OrvCPP::Camera& camera);
    /// Asks all cameras that are not open, in parallel and without waiting: the cause (a switch, a
    /// cable) may affect several, and a caller that tries them one by one would wait for each.
    void askAll() const;
    /// All below require m_mutex. A closed camera that has moved to another address or port keeps
    /// its entry: its old key is not among those that \p answered.
    Entry& entryOf(const CameraRecord& record, const std::set<std::string>& answered);
    std::string freeId(const CameraRecord& record) const;
    std::shared_ptr<GenicamInterface> interfaceOf(const CameraRecord& record);
    const std::shared_ptr<GenicamTransportLayer>& layerOf(OrvTransportLayerType type) const;

    CameraContext m_context;
    ProviderHost& m_host;
    std::vector<std::shared_ptr<GenicamTransportLayer>> m_layers;
    mutable std::mutex m_mutex;
    /// By the record's key; guarded by the mutex.
    std::map<std::string, Entry> m_cameras;
    /// By kind, ID and address; guarded by the mutex.
    std::map<std::string, std::shared_ptr<GenicamInterface>> m_interfaces;
};

} // namespace orv::aravis
