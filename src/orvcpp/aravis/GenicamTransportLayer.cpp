// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/GenicamTransportLayer.h"

#include "orvcpp/aravis/GenicamModuleFeatures.h"
#include "orvcpp/aravis/discovery/CameraRegistry.h"
#include "orvcpp/core/ModuleFeatures.h"

#include <utility>

namespace orv::aravis {

namespace {

std::string libraryVersion() {
    return std::to_string(arv_get_major_version()) + '.' + std::to_string(arv_get_minor_version()) +
           '.' + std::to_string(arv_get_micro_version());
}

TransportLayerData describe(OrvTransportLayerType type) {
    const bool isGige = type == OrvTransportLayerTypeGEV;
    TransportLayerData data;
    data.id = isGige ? "GenICamGEV" : "GenICamU3V";
    data.vendor = vendorName;
    data.name = isGige ? "MRD GenICam GigE Vision Transport Layer"
                       : "MRD GenICam USB3 Vision Transport Layer";
    data.model = data.name;
    data.version = libraryVersion();
    data.path = "Aravis " + libraryVersion();
    data.type = type;
    return data;
}

} // namespace

GenicamTransportLayer::GenicamTransportLayer(const std::shared_ptr<ProviderCalls>& calls,
                                             OrvTransportLayerType type,
                                             std::weak_ptr<const CameraRegistry> registry)
    : MemoryTransportLayer(
          std::make_shared<FeatureModule>(calls, std::make_shared<Device>(),
                                          makeTransportLayerFeatures(describe(type))),
          describe(type)),
      m_type(type), m_registry(std::move(registry)) {}

std::vector<std::shared_ptr<OrvCPP::Interface>> GenicamTransportLayer::interfaces() const {
    const auto registry = m_registry.lock();
    return registry ? registry->interfacesOf(m_type)
                    : std::vector<std::shared_ptr<OrvCPP::Interface>>();
}

std::vector<std::shared_ptr<OrvCPP::Camera>> GenicamTransportLayer::cameras() const {
    const auto registry = m_registry.lock();
    return registry ? registry->camerasOf(m_type, nullptr)
                    : std::vector<std::shared_ptr<OrvCPP::Camera>>();
}

} // namespace orv::aravis
