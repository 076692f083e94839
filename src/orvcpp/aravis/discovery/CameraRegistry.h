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

/// Keeps the objects of every camera that was ever found, of their interfaces and of the transport
/// layers, and knows which cameras are there. Thread-safe.
class CameraRegistry final : public std::enable_shared_from_this<CameraRegistry> {
public:
    using Change = std::pair<std::shared_ptr<GenicamCamera>, OrvUpdateTriggerType>;

    static std::shared_ptr<CameraRegistry> make(CameraContext context, ProviderHost& host);

    /// Takes over what a look has found that began at \p begun. What has changed by it.
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
        /// Looks in a row that have not found it.
        int misses = 0;
        Discovery::Clock::time_point lostAt{};
    };

    CameraRegistry(CameraContext context, ProviderHost& host);
    void begin();
    /// The camera is not there until a look that begins later finds it again.
    void lose(const OrvCPP::Camera& camera);
    /// Asks the cameras that are not open, at the same time and without waiting: what has taken one
    /// away, a switch or a cable, may have taken others, and whoever asks them one after another
    /// would wait for each.
    void askAll() const;
    /// With the mutex held, as all below.
    /// A device that has not answered at its place, and that is not open, may have \p answered at
    /// another: it has got another address, or hangs on another port.
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
