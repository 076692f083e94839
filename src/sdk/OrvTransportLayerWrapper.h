// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/TransportLayer.h"
#include "sdk/OrvFeatureContainerWrapper.h"

#include <string>

/// A transport layer of the camera SDK.
class OrvTransportLayerWrapper : public OrvFeatureContainerWrapper {
public:
    explicit OrvTransportLayerWrapper(std::shared_ptr<OrvCPP::TransportLayer> handle = {});
    ~OrvTransportLayerWrapper() override;

    std::shared_ptr<OrvCPP::FeatureContainer> GetFeatureContainer() const override;
    virtual std::shared_ptr<OrvCPP::TransportLayer>& GetHandle();
    virtual OrvErrorType
    GetInterfaces(std::vector<std::shared_ptr<OrvInterfaceWrapper>>& interfaces) const;
    virtual OrvErrorType GetCameras(std::vector<std::shared_ptr<OrvCameraWrapper>>& cameras) const;
    virtual OrvErrorType GetID(std::string& id) const;
    virtual OrvErrorType GetName(std::string& name) const;
    virtual OrvErrorType GetModelName(std::string& name) const;
    virtual OrvErrorType GetVendor(std::string& vendor) const;
    virtual OrvErrorType GetVersion(std::string& version) const;
    virtual OrvErrorType GetPath(std::string& path) const;
    virtual OrvErrorType GetType(OrvTransportLayerType& type) const;

private:
    std::shared_ptr<OrvCPP::TransportLayer> m_transportLayer;
};
