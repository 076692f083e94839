// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/SimulatedTransportLayer.h"

#include <utility>

namespace orv::simulated {

SimulatedTransportLayer::SimulatedTransportLayer(std::shared_ptr<FeatureModule> module,
                                                 TransportLayerData data, ProviderHost& host)
    : MemoryTransportLayer(std::move(module), std::move(data)), m_host(host) {}

std::vector<std::shared_ptr<OrvCPP::Interface>> SimulatedTransportLayer::interfaces() const {
    std::vector<std::shared_ptr<OrvCPP::Interface>> found;
    for (const auto& kept : m_interfaces) {
        if (auto interface = kept.lock())
            found.push_back(std::move(interface));
    }
    return found;
}

std::vector<std::shared_ptr<OrvCPP::Camera>> SimulatedTransportLayer::cameras() const {
    return pluggedCameras(m_cameras, m_host);
}

} // namespace orv::simulated
