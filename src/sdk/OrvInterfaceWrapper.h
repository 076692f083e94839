// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Interface.h"
#include "sdk/OrvFeatureContainerWrapper.h"

#include <string>

/// A host interface of the camera SDK.
class OrvInterfaceWrapper : public OrvFeatureContainerWrapper {
public:
    explicit OrvInterfaceWrapper(std::shared_ptr<OrvCPP::Interface> handle = {});
    ~OrvInterfaceWrapper() override;

    std::shared_ptr<OrvCPP::FeatureContainer> GetFeatureContainer() const override;
    virtual std::shared_ptr<OrvCPP::Interface>& GetHandle();
    virtual OrvErrorType GetID(std::string& id) const;
    virtual OrvErrorType GetType(OrvTransportLayerType& type) const;
    virtual OrvErrorType GetName(std::string& name) const;
    virtual OrvErrorType GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const;
    virtual OrvErrorType GetCameras(std::vector<std::shared_ptr<OrvCameraWrapper>>& cameras) const;

private:
    std::shared_ptr<OrvCPP::Interface> m_interface;
};
