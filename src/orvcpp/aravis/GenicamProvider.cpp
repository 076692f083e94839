// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/GenicamProvider.h"

#include "orvcpp/aravis/discovery/CameraRoster.h"
#include "orvcpp/core/EventThread.h"
#include "orvcpp/core/Session.h"

#include <utility>

namespace orv::aravis {

namespace {

/// How long the end waits for the library to let go of cameras that have died.
constexpr std::chrono::milliseconds stragglerLimit{500};

class GenicamProvider final : public Provider {
public:
    GenicamProvider(const GenicamSettings& settings, ProviderHost& host,
                    const std::shared_ptr<CallGate>& gate)
        : m_host(host), m_calls(std::make_shared<Session>(gate, std::chrono::microseconds(0))),
          m_roster(CameraRoster::make(surroundings(settings), host)),
          m_discovery(settings.sysfs,
                      [this](const auto& found, auto begun) { onFound(found, begun); }) {}
    ~GenicamProvider() override { shutDown(); }

    OrvErrorType start() override {
        m_discovery.start();
        return OrvErrorSuccess;
    }

    void shutDown() override {
        m_calls->end();
        // A look takes a second, so it ends while the cameras are closed.
        m_discovery.askToStop();
        for (const auto& camera : m_roster->all())
            camera->close();
        m_discovery.stop();
        m_events->stop();
        m_park->join(stragglerLimit);
    }

    std::vector<Listed<OrvCPP::TransportLayer>> transportLayers() const override {
        std::vector<Listed<OrvCPP::TransportLayer>> listed;
        for (const auto& layer : m_roster->layers())
            listed.push_back({layer, layer->id(), {}});
        return listed;
    }

    std::vector<Listed<OrvCPP::Interface>> interfaces() const override {
        std::vector<Listed<OrvCPP::Interface>> listed;
        for (const auto& interface : m_roster->interfaces())
            listed.push_back({interface, interface->id(), {}});
        return listed;
    }

    std::vector<Listed<OrvCPP::Camera>> cameras() const override {
        std::vector<Listed<OrvCPP::Camera>> listed;
        for (const auto& camera : m_roster->present())
            listed.push_back({camera, camera->id(), camera->record().key()});
        return listed;
    }

private:
    CameraSurroundings surroundings(const GenicamSettings& settings) {
        CameraSurroundings made;
        made.calls = m_calls;
        made.park = m_park;
        made.streams = std::make_shared<StreamPreparation>();
        made.packetSocket = settings.packetSocket;
        // A call may still be under way when the provider is gone, so it is not captured.
        made.changed = [events = m_events, &host = m_host](const auto& camera, auto reason) {
            events->post([camera, reason, &host] { host.cameraListChanged(camera, reason); });
        };
        return made;
    }

    void onFound(const std::vector<CameraRecord>& found, Discovery::Clock::time_point begun) {
        for (const auto& [camera, reason] : m_roster->update(found, begun))
            m_events->post([camera = camera, reason = reason, &host = m_host] {
                host.cameraListChanged(camera, reason);
            });
    }

    ProviderHost& m_host;
    const std::shared_ptr<Session> m_calls;
    const std::shared_ptr<ThreadPark> m_park = std::make_shared<ThreadPark>();
    const std::shared_ptr<EventThread> m_events = std::make_shared<EventThread>();
    const std::shared_ptr<CameraRoster> m_roster;
    Discovery m_discovery;
};

} // namespace

std::shared_ptr<Provider> makeGenicamProvider(const GenicamSettings& settings, ProviderHost& host,
                                              const std::shared_ptr<CallGate>& gate) {
    return std::make_shared<GenicamProvider>(settings, host, gate);
}

} // namespace orv::aravis
