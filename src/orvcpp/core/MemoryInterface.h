// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/MemoryContainer.h"

#include "OrvCPP/Interface.h"

#include <string>
#include <vector>

namespace orv {

/// A host interface whose provider lists the cameras on it. Thread-safe.
class MemoryInterface : public MemoryContainer<OrvCPP::Interface> {
public:
    const std::string& id() const { return m_id; }
    OrvTransportLayerType type() const { return m_type; }

    OrvErrorType GetID(char* buffer, std::uint32_t& length) const final;
    OrvErrorType GetType(OrvTransportLayerType& type) const final;
    OrvErrorType GetName(char* buffer, std::uint32_t& length) const final;
    OrvErrorType GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const final;
    OrvErrorType GetCameras(std::shared_ptr<OrvCPP::Camera>* cameras,
                            std::uint32_t& count) const final;

protected:
    MemoryInterface(std::shared_ptr<FeatureModule> module, OrvTransportLayerType type,
                    std::string id, std::string name, std::weak_ptr<OrvCPP::TransportLayer> layer);

    /// The cameras that are present, as ProviderHost::publicCamera() answers them. Called without a
    /// lock.
    virtual std::vector<std::shared_ptr<OrvCPP::Camera>> cameras() const = 0;

private:
    const OrvTransportLayerType m_type;
    const std::string m_id;
    const std::string m_name;
    const std::weak_ptr<OrvCPP::TransportLayer> m_layer;
};

} // namespace orv
