// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/CallCounter.h"
#include "orvcpp/core/EventThread.h"
#include "orvcpp/core/Provider.h"
#include "orvcpp/core/ProviderCalls.h"
#include "orvcpp/simulated/Scenario.h"
#include "orvcpp/simulated/SimulatedCamera.h"
#include "orvcpp/simulated/SimulatedInterface.h"
#include "orvcpp/simulated/SimulatedTransportLayer.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace orv::simulated {

/// The cameras of one scenario. Thread-safe.
class SimulatedProvider final : public Provider {
public:
    /// Throws a FormatError when the scenario names a feature or command that does not exist.
    SimulatedProvider(const Scenario& scenario, ProviderHost& host,
                      std::shared_ptr<CallCounter> callCounter);
    ~SimulatedProvider() override;

    OrvErrorType start() override;
    void shutDown() override;
    std::vector<Listed<OrvCPP::TransportLayer>> transportLayers() const override;
    std::vector<Listed<OrvCPP::Interface>> interfaces() const override;
    std::vector<Listed<OrvCPP::Camera>> cameras() const override;
    OrvCPP::SimulatedHost simulatedHost() const override;
    bool setCameraPlugged(const std::string& id, bool plugged) override;

private:
    void buildTransportLayers();
    void buildInterfaces();
    void buildCameras();
    std::shared_ptr<SimulatedCamera> makeCamera(const CameraData& data);
    std::shared_ptr<Link> linkOf(const InterfaceData& data);
    std::shared_ptr<FeatureModule> makeModule(FeatureSet features,
                                              std::shared_ptr<Device> device) const;
    void setPlugged(const std::shared_ptr<SimulatedCamera>& camera, bool plugged);

    const Scenario m_scenario;
    ProviderHost& m_host;
    const std::shared_ptr<ProviderCalls> m_calls;
    const std::shared_ptr<PatternStore> m_patterns = std::make_shared<PatternStore>();
    const std::shared_ptr<EventThread> m_events = std::make_shared<EventThread>();
    /// By adapter, controller or interface: interfaces of one adapter or controller share a link.
    std::map<std::string, std::shared_ptr<Link>> m_links;
    std::vector<std::shared_ptr<SimulatedTransportLayer>> m_layers;
    std::vector<std::shared_ptr<SimulatedInterface>> m_interfaces;
    std::vector<std::shared_ptr<SimulatedCamera>> m_cameras;
};

} // namespace orv::simulated
