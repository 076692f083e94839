// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/RealCameras.h"

#include "OrvCPP/OrvSystem.h"
#include "OrvCPP/TransportLayer.h"
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

} // namespace

RealCameras realCameras(OrvCPP::OrvSystem& system) {
    std::vector<std::shared_ptr<OrvCPP::TransportLayer>> layers;
    SdkQuery::elements(&system, layers, &OrvCPP::OrvSystem::GetTransportLayers);
    RealCameras cameras;
    for (const auto& layer : layers) {
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
