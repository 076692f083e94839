// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/GenicamInterface.h"

#include "orvcpp/aravis/GenicamModuleFeatures.h"
#include "orvcpp/aravis/discovery/CameraRegistry.h"
#include "orvcpp/core/ModuleFeatures.h"

#include <utility>

namespace orv::aravis {

namespace {

std::string nameOf(const CameraRecord& camera) {
    return camera.type == OrvTransportLayerTypeGEV ? gigeInterfaceName(camera.interfaceId())
                                                   : usbInterfaceName(camera.interfaceId());
}

} // namespace

GenicamInterface::GenicamInterface(const std::shared_ptr<ProviderCalls>& calls,
                                   const CameraRecord& camera,
                                   std::weak_ptr<OrvCPP::TransportLayer> layer,
                                   std::weak_ptr<const CameraRegistry> registry)
    : MemoryInterface(
          std::make_shared<FeatureModule>(calls, std::make_shared<Device>(),
                                          makeInterfaceFeatures(camera, nameOf(camera))),
          camera.type, camera.interfaceId(), nameOf(camera), std::move(layer)),
      m_registry(std::move(registry)) {}

std::vector<std::shared_ptr<OrvCPP::Camera>> GenicamInterface::cameras() const {
    const auto registry = m_registry.lock();
    return registry ? registry->camerasOf(type(), this)
                    : std::vector<std::shared_ptr<OrvCPP::Camera>>();
}

} // namespace orv::aravis
