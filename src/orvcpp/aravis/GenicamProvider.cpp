// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/GenicamProvider.h"

#include "orvcpp/aravis/device/LibraryMessages.h"
#include "orvcpp/aravis/discovery/CameraRegistry.h"
#include "orvcpp/core/EventThread.h"
#include "orvcpp/core/ProviderCalls.h"

#include <utility>

namespace orv::aravis {

namespace {

/// How long the shutdown waits for library calls to lost cameras.
constexpr std::chrono::milliseconds stragglerLimit{500};

class GenicamProvider final : public Provider {
public:
    GenicamProvider(const GenicamSettings& settings, ProviderHost& host,
                    const std::shared_ptr<CallCounter>& callCounter)
        : m_host(host),
          m_calls(std::make_shared<ProviderCalls>(callCounter, std::chrono::microseconds(0))),
          m_registry(CameraRegistry::make(context(settings), host)),
          m_discovery(settings.sysfs,
                      [this](const auto& found, auto begun) { onFound(found, begun); }) {}
    ~GenicamProvider() override { shutDown(); }

    OrvErrorType start() override {
        m_discovery.start();
        return OrvErrorSuccess;
    }

    void shutDown() override {
        m_calls->end();
        // A search takes a second: it ends while the cameras are closed.
        m_discovery.askToStop();
        for (const auto& camera : m_registry->all())
            camera->close();
        m_discovery.stop();
        m_events->stop();
        m_threads->join(stragglerLimit);
    }

    std::vector<Listed<OrvCPP::TransportLayer>> transportLayers() const override {
        std::vector<Listed<OrvCPP::TransportLayer>> listed;
        for (const auto& layer : m_registry->layers())
            listed.push_back({layer, layer->id(), {}});
        return listed;
    }

    std::vector<Listed<OrvCPP::Interface>> interfaces() const override {
        std::vector<Listed<OrvCPP::Interface>> listed;
        for (const auto& interface : m_registry->interfaces())
            listed.push_back({interface, interface->id(), {}});
        return listed;
    }

    std::vector<Listed<OrvCPP::Camera>> cameras() const override {
        std::vector<Listed<OrvCPP::Camera>> listed;
        for (const auto& camera : m_registry->present())
            listed.push_back({camera, camera->id(), camera->record().key()});
        return listed;
    }

private:
    CameraContext context(const GenicamSettings& settings) {
        CameraContext made;
        made.calls = m_calls;
        made.threads = m_threads;
        made.receivers = std::make_shared<AdapterReceivers>();
        made.packetSocket = settings.packetSocket;
        // A call may outlive the provider, so it does not capture it.
        made.changed = [events = m_events, &host = m_host](const auto& camera, auto reason) {
            events->post([camera, reason, &host] { host.cameraListChanged(camera, reason); });
        };
        return made;
    }

    void onFound(const std::vector<CameraRecord>& found, Discovery::Clock::time_point begun) {
        for (const auto& [camera, reason] : m_registry->update(found, begun))
            m_events->post([camera = camera, reason = reason, &host = m_host] {
                host.cameraListChanged(camera, reason);
            });
    }

    const LibraryMessages m_messages;
    ProviderHost& m_host;
    const std::shared_ptr<ProviderCalls> m_calls;
    const std::shared_ptr<DetachableThreads> m_threads = std::make_shared<DetachableThreads>();
    const std::shared_ptr<EventThread> m_events = std::make_shared<EventThread>();
    const std::shared_ptr<CameraRegistry> m_registry;
    Discovery m_discovery;
};

} // namespace

std::shared_ptr<Provider> makeGenicamProvider(const GenicamSettings& settings, ProviderHost& host,
                                              const std::shared_ptr<CallCounter>& callCounter) {
    return std::make_shared<GenicamProvider>(settings, host, callCounter);
}

} // namespace orv::aravis
