// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/MemoryInterface.h"
#include "orvcpp/core/Provider.h"
#include "orvcpp/simulated/SimulatedCamera.h"

#include <utility>

namespace orv::simulated {

class SimulatedInterface final : public MemoryInterface {
public:
    SimulatedInterface(std::shared_ptr<FeatureModule> module, const InterfaceData& data,
                       OrvTransportLayerType type, std::weak_ptr<OrvCPP::TransportLayer> layer,
                       ProviderHost& host)
        : MemoryInterface(std::move(module), type, data.id, data.name, std::move(layer)),
          m_host(host) {}

    /// To be called while the scenario is built.
    void add(const std::shared_ptr<SimulatedCamera>& camera) { m_cameras.push_back(camera); }

private:
    std::vector<std::shared_ptr<OrvCPP::Camera>> cameras() const override {
        return pluggedCameras(m_cameras, m_host);
    }

    ProviderHost& m_host;
    std::vector<std::weak_ptr<SimulatedCamera>> m_cameras;
};

} // namespace orv::simulated
