// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/discovery/CameraRecord.h"
#include "orvcpp/core/MemoryInterface.h"
#include "orvcpp/core/ProviderCalls.h"

namespace orv::aravis {

class CameraRegistry;

/// A network adapter or a USB controller with cameras.
class GenicamInterface final : public MemoryInterface {
public:
    /// The interface through which \p camera is reached.
    GenicamInterface(const std::shared_ptr<ProviderCalls>& calls, const CameraRecord& camera,
                     std::weak_ptr<OrvCPP::TransportLayer> layer,
                     std::weak_ptr<const CameraRegistry> registry);

private:
    std::vector<std::shared_ptr<OrvCPP::Camera>> cameras() const override;

    const std::weak_ptr<const CameraRegistry> m_registry;
};

} // namespace orv::aravis
