// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/RealCameras.h"

#include "OrvCPP/OrvSystem.h"
#include "OrvCPP/TransportLayer.h"
#include "OrvSimulation/Simulation.h"
#include "sdk/SdkQuery.h"

namespace {

/// Real cameras are on the transport layers of the GenICam provider, which begin like this.
bool isReal(const OrvCPP::TransportLayer& layer) {
    std::string id;
    SdkQuery::text(&layer, id, &OrvCPP::TransportLayer::GetID);
    return id.rfind("GenICam", 0) == 0;
}

std::size_t cameraCount(const OrvCPP::TransportLayer& layer) {
    std::uint32_t count = 0;
    return layer.GetCameras(nullptr, count) == OrvErrorSuccess ? count : 0;
}

std::vector<std::shared_ptr<OrvCPP::TransportLayer>> layersOf(OrvCPP::OrvSystem& system) {
    std::vector<std::shared_ptr<OrvCPP::TransportLayer>> layers;
    SdkQuery::elements(&system, layers, &OrvCPP::OrvSystem::GetTransportLayers);
    return layers;
}

} // namespace

RealCameras realCameras(OrvCPP::OrvSystem& system) {
    RealCameras cameras;
    for (const auto& layer : layersOf(system)) {
        OrvTransportLayerType type{};
        if (!layer || !isReal(*layer) || layer->GetType(type) != OrvErrorSuccess)
            continue;
        if (type == OrvTransportLayerTypeGEV)
            cameras.gige += cameraCount(*layer);
        if (type == OrvTransportLayerTypeU3V) {
            cameras.usb += cameraCount(*layer);
            cameras.areUsbSought = true;
        }
    }
    return cameras;
}

bool simulatesAll(OrvCPP::OrvSystem& system) {
    const auto layers = layersOf(system);
    return dynamic_cast<const OrvCPP::ISimulation*>(&system) != nullptr &&
           std::none_of(layers.begin(), layers.end(),
                        [](const auto& layer) { return layer && isReal(*layer); });
}
