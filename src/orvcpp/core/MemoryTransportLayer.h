// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/MemoryContainer.h"

#include "OrvCPP/TransportLayer.h"

#include <string>
#include <vector>

namespace orv {

/// What a transport layer answers about itself.
struct TransportLayerData {
    std::string id;
    std::string vendor;
    std::string name;
    std::string model;
    std::string version;
    std::string path;
    OrvTransportLayerType type = OrvTransportLayerTypeUnknown;
};

/// A transport layer whose provider lists what is on it. Thread-safe.
class MemoryTransportLayer : public MemoryContainer<OrvCPP::TransportLayer> {
public:
    const std::string& id() const { return m_data.id; }

    OrvErrorType GetInterfaces(std::shared_ptr<OrvCPP::Interface>* interfaces,
                               std::uint32_t& count) const final;
    OrvErrorType GetCameras(std::shared_ptr<OrvCPP::Camera>* cameras,
                            std::uint32_t& count) const final;
    OrvErrorType GetID(char* buffer, std::uint32_t& length) const final;
    OrvErrorType GetName(char* buffer, std::uint32_t& length) const final;
    OrvErrorType GetModelName(char* buffer, std::uint32_t& length) const final;
    OrvErrorType GetVendor(char* buffer, std::uint32_t& length) const final;
    OrvErrorType GetVersion(char* buffer, std::uint32_t& length) const final;
    OrvErrorType GetPath(char* buffer, std::uint32_t& length) const final;
    OrvErrorType GetType(OrvTransportLayerType& type) const final;

protected:
    MemoryTransportLayer(std::shared_ptr<FeatureModule> module, TransportLayerData data);

    /// The interfaces and cameras that are present; cameras as ProviderHost::publicCamera() answers
    /// them. Called without a lock.
    virtual std::vector<std::shared_ptr<OrvCPP::Interface>> interfaces() const = 0;
    virtual std::vector<std::shared_ptr<OrvCPP::Camera>> cameras() const = 0;

private:
    const TransportLayerData m_data;
};

} // namespace orv
