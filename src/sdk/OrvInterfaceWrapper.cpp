// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvInterfaceWrapper.h"

#include "sdk/OrvCameraWrapper.h"
#include "sdk/SdkQuery.h"

OrvInterfaceWrapper::OrvInterfaceWrapper(std::shared_ptr<OrvCPP::Interface> handle)
    : m_interface(std::move(handle)) {}

OrvInterfaceWrapper::~OrvInterfaceWrapper() = default;

std::shared_ptr<OrvCPP::FeatureContainer> OrvInterfaceWrapper::GetFeatureContainer() const {
    return m_interface;
}

std::shared_ptr<OrvCPP::Interface>& OrvInterfaceWrapper::GetHandle() {
    return m_interface;
}

OrvErrorType OrvInterfaceWrapper::GetID(std::string& id) const {
    return SdkQuery::text(m_interface.get(), id, &OrvCPP::Interface::GetID);
}

OrvErrorType OrvInterfaceWrapper::GetType(OrvTransportLayerType& type) const {
    return m_interface ? m_interface->GetType(type) : noObject;
}

OrvErrorType OrvInterfaceWrapper::GetName(std::string& name) const {
    return SdkQuery::text(m_interface.get(), name, &OrvCPP::Interface::GetName);
}

OrvErrorType
OrvInterfaceWrapper::GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const {
    return m_interface ? m_interface->GetTransportLayer(layer) : noObject;
}

OrvErrorType
OrvInterfaceWrapper::GetCameras(std::vector<std::shared_ptr<OrvCameraWrapper>>& cameras) const {
    return SdkQuery::wrappers<OrvCPP::Camera>(m_interface.get(), cameras,
                                              &OrvCPP::Interface::GetCameras);
}
