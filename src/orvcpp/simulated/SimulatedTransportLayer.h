// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/MemoryTransportLayer.h"
#include "orvcpp/core/Provider.h"
#include "orvcpp/simulated/SimulatedCamera.h"

namespace orv::simulated {

class SimulatedTransportLayer final : public MemoryTransportLayer {
public:
    SimulatedTransportLayer(std::shared_ptr<FeatureModule> module, TransportLayerData data,
                            ProviderHost& host);

    /// To be called while the scenario is built.
    void add(const std::shared_ptr<OrvCPP::Interface>& interface) {
        m_interfaces.push_back(interface);
    }
    void add(const std::shared_ptr<SimulatedCamera>& camera) { m_cameras.push_back(camera); }

private:
    std::vector<std::shared_ptr<OrvCPP::Interface>> interfaces() const override;
    std::vector<std::shared_ptr<OrvCPP::Camera>> cameras() const override;

    ProviderHost& m_host;
    std::vector<std::weak_ptr<OrvCPP::Interface>> m_interfaces;
    std::vector<std::weak_ptr<SimulatedCamera>> m_cameras;
};

} // namespace orv::simulated
