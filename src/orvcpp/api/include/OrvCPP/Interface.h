// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/FeatureContainer.h"

namespace OrvCPP {

/// One host interface: a network adapter or a USB host controller. Thread-safe.
class ORVCPP_API Interface : public FeatureContainer {
public:
    virtual OrvErrorType GetID(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetType(OrvTransportLayerType& type) const = 0;
    virtual OrvErrorType GetName(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetTransportLayer(std::shared_ptr<TransportLayer>& layer) const = 0;
    virtual OrvErrorType GetCameras(std::shared_ptr<Camera>* cameras,
                                    std::uint32_t& count) const = 0;
};

/// Told when an interface appears or disappears.
class ORVCPP_API IInterfaceListObserver {
public:
    virtual ~IInterfaceListObserver() = default;
    /// Called on one of the SDK's own threads.
    virtual void InterfaceListChanged(const std::shared_ptr<Interface>& changed,
                                      OrvUpdateTriggerType reason) = 0;
};

} // namespace OrvCPP
