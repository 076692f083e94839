// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvTransportLayerWrapper.h"

#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvInterfaceWrapper.h"
#include "sdk/SdkQuery.h"

OrvTransportLayerWrapper::OrvTransportLayerWrapper(std::shared_ptr<OrvCPP::TransportLayer> handle)
    : m_transportLayer(std::move(handle)) {}

OrvTransportLayerWrapper::~OrvTransportLayerWrapper() = default;

std::shared_ptr<OrvCPP::FeatureContainer> OrvTransportLayerWrapper::GetFeatureContainer() const {
    return m_transportLayer;
}

std::shared_ptr<OrvCPP::TransportLayer>& OrvTransportLayerWrapper::GetHandle() {
    return m_transportLayer;
}

OrvErrorType OrvTransportLayerWrapper::GetInterfaces(
    std::vector<std::shared_ptr<OrvInterfaceWrapper>>& interfaces) const {
    return SdkQuery::wrappers<OrvCPP::Interface>(m_transportLayer.get(), interfaces,
                                                 &OrvCPP::TransportLayer::GetInterfaces);
}

OrvErrorType OrvTransportLayerWrapper::GetCameras(
    std::vector<std::shared_ptr<OrvCameraWrapper>>& cameras) const {
    return SdkQuery::wrappers<OrvCPP::Camera>(m_transportLayer.get(), cameras,
                                              &OrvCPP::TransportLayer::GetCameras);
}

OrvErrorType OrvTransportLayerWrapper::GetID(std::string& id) const {
    return SdkQuery::text(m_transportLayer.get(), id, &OrvCPP::TransportLayer::GetID);
}

OrvErrorType OrvTransportLayerWrapper::GetName(std::string& name) const {
    return SdkQuery::text(m_transportLayer.get(), name, &OrvCPP::TransportLayer::GetName);
}

OrvErrorType OrvTransportLayerWrapper::GetModelName(std::string& name) const {
    return SdkQuery::text(m_transportLayer.get(), name, &OrvCPP::TransportLayer::GetModelName);
}

OrvErrorType OrvTransportLayerWrapper::GetVendor(std::string& vendor) const {
    return SdkQuery::text(m_transportLayer.get(), vendor, &OrvCPP::TransportLayer::GetVendor);
}

OrvErrorType OrvTransportLayerWrapper::GetVersion(std::string& version) const {
    return SdkQuery::text(m_transportLayer.get(), version, &OrvCPP::TransportLayer::GetVersion);
}

OrvErrorType OrvTransportLayerWrapper::GetPath(std::string& path) const {
    return SdkQuery::text(m_transportLayer.get(), path, &OrvCPP::TransportLayer::GetPath);
}

OrvErrorType OrvTransportLayerWrapper::GetType(OrvTransportLayerType& type) const {
    return m_transportLayer ? m_transportLayer->GetType(type) : noObject;
}
