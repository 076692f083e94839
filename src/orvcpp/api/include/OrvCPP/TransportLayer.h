// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/FeatureContainer.h"

namespace OrvCPP {

/// One transport layer (GenTL producer). Thread-safe.
class ORVCPP_API TransportLayer : public FeatureContainer {
public:
    virtual OrvErrorType GetInterfaces(std::shared_ptr<Interface>* interfaces,
                                       std::uint32_t& count) const = 0;
    virtual OrvErrorType GetCameras(std::shared_ptr<Camera>* cameras,
                                    std::uint32_t& count) const = 0;
    virtual OrvErrorType GetID(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetName(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetModelName(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetVendor(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetVersion(char* buffer, std::uint32_t& length) const = 0;
    /// Where the transport layer was loaded from.
    virtual OrvErrorType GetPath(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetType(OrvTransportLayerType& type) const = 0;
};

} // namespace OrvCPP
