// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/MemoryTransportLayer.h"
#include "orvcpp/core/ProviderCalls.h"

namespace orv::aravis {

class CameraRegistry;

/// The transport layer of all GigE Vision cameras, or of all USB3 Vision cameras.
class GenicamTransportLayer final : public MemoryTransportLayer {
public:
    GenicamTransportLayer(const std::shared_ptr<ProviderCalls>& calls, OrvTransportLayerType type,
                          std::weak_ptr<const CameraRegistry> registry);

private:
    std::vector<std::shared_ptr<OrvCPP::Interface>> interfaces() const override;
    std::vector<std::shared_ptr<OrvCPP::Camera>> cameras() const override;

    const OrvTransportLayerType m_type;
    const std::weak_ptr<const CameraRegistry> m_registry;
};

} // namespace orv::aravis
