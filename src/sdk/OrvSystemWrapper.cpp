// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvSystemWrapper.h"

#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvInterfaceWrapper.h"
#include "sdk/OrvTransportLayerWrapper.h"
#include "sdk/SdkQuery.h"

OrvSystemWrapper::OrvSystemWrapper() : OrvSystemWrapper(OrvCPP::OrvSystem::GetInstance()) {}

OrvSystemWrapper::OrvSystemWrapper(OrvCPP::OrvSystem& system) : m_system(system) {}

OrvSystemWrapper::~OrvSystemWrapper() = default;

OrvCPP::OrvSystem& OrvSystemWrapper::GetInstance() const {
    return m_system;
}

OrvErrorType OrvSystemWrapper::QueryVersion(OrvVersionInfo& version) const {
    return m_system.QueryVersion(version);
}

OrvErrorType OrvSystemWrapper::Startup() {
    return m_system.Startup();
}

OrvErrorType OrvSystemWrapper::Startup(const wchar_t* pathConfiguration) {
    return m_system.Startup(pathConfiguration);
}

OrvErrorType OrvSystemWrapper::Shutdown() {
    return m_system.Shutdown();
}

OrvErrorType
OrvSystemWrapper::GetInterfaces(std::vector<std::shared_ptr<OrvInterfaceWrapper>>& interfaces) {
    return SdkQuery::wrappers<OrvCPP::Interface>(&m_system, interfaces,
                                                 &OrvCPP::OrvSystem::GetInterfaces);
}

OrvErrorType OrvSystemWrapper::GetInterfaceByID(const char* id,
                                                std::shared_ptr<OrvCPP::Interface>& found) {
    return m_system.GetInterfaceByID(id, found);
}

OrvErrorType OrvSystemWrapper::GetCameras(std::vector<std::shared_ptr<OrvCameraWrapper>>& cameras) {
    return SdkQuery::wrappers<OrvCPP::Camera>(&m_system, cameras, &OrvCPP::OrvSystem::GetCameras);
}

OrvErrorType OrvSystemWrapper::GetCameraByID(const char* id,
                                             std::shared_ptr<OrvCPP::Camera>& found) {
    return m_system.GetCameraByID(id, found);
}

OrvErrorType OrvSystemWrapper::RegisterCameraListObserver(
    const std::shared_ptr<OrvCPP::ICameraListObserver>& observer) {
    return m_system.RegisterCameraListObserver(observer);
}

OrvErrorType OrvSystemWrapper::UnregisterCameraListObserver(
    const std::shared_ptr<OrvCPP::ICameraListObserver>& observer) {
    return m_system.UnregisterCameraListObserver(observer);
}

OrvErrorType OrvSystemWrapper::RegisterInterfaceListObserver(
    const std::shared_ptr<OrvCPP::IInterfaceListObserver>& observer) {
    return m_system.RegisterInterfaceListObserver(observer);
}

OrvErrorType OrvSystemWrapper::UnregisterInterfaceListObserver(
    const std::shared_ptr<OrvCPP::IInterfaceListObserver>& observer) {
    return m_system.UnregisterInterfaceListObserver(observer);
}

OrvErrorType
OrvSystemWrapper::RegisterCameraFactory(const std::shared_ptr<OrvCPP::ICameraFactory>& factory) {
    return m_system.RegisterCameraFactory(factory);
}

OrvErrorType OrvSystemWrapper::UnregisterCameraFactory() {
    return m_system.UnregisterCameraFactory();
}

OrvErrorType OrvSystemWrapper::GetTransportLayers(
    std::vector<std::shared_ptr<OrvTransportLayerWrapper>>& layers) {
    return SdkQuery::wrappers<OrvCPP::TransportLayer>(&m_system, layers,
                                                      &OrvCPP::OrvSystem::GetTransportLayers);
}

OrvErrorType
OrvSystemWrapper::GetTransportLayerByID(const char* id,
                                        std::shared_ptr<OrvCPP::TransportLayer>& found) {
    return m_system.GetTransportLayerByID(id, found);
}
