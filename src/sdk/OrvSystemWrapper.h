// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvSystem.h"
#include "sdk/WrapperDeclarations.h"

#include <memory>
#include <vector>

class CameraHandler;

/// The camera SDK's one system object, not owned. Also the place where camera handlers are made,
/// so that a substitute system hands out substitute handlers. Thread-safe as far as the SDK's
/// object is, but for CreateCameraHandler, which is bound to the GUI thread.
class OrvSystemWrapper {
public:
    /// Around the process's own system object.
    OrvSystemWrapper();
    /// Around a system object that a host hands in; it must outlive the wrapper.
    explicit OrvSystemWrapper(OrvCPP::OrvSystem& system);
    virtual ~OrvSystemWrapper();

    OrvSystemWrapper(const OrvSystemWrapper&) = delete;
    OrvSystemWrapper& operator=(const OrvSystemWrapper&) = delete;

    virtual OrvCPP::OrvSystem& GetInstance() const;
    virtual OrvErrorType QueryVersion(OrvVersionInfo& version) const;
    virtual OrvErrorType Startup();
    virtual OrvErrorType Startup(const wchar_t* pathConfiguration);
    virtual OrvErrorType Shutdown();
    virtual OrvErrorType
    GetInterfaces(std::vector<std::shared_ptr<OrvInterfaceWrapper>>& interfaces);
    virtual OrvErrorType GetInterfaceByID(const char* id,
                                          std::shared_ptr<OrvCPP::Interface>& found);
    virtual OrvErrorType GetCameras(std::vector<std::shared_ptr<OrvCameraWrapper>>& cameras);
    virtual OrvErrorType GetCameraByID(const char* id, std::shared_ptr<OrvCPP::Camera>& found);
    virtual OrvErrorType
    RegisterCameraListObserver(const std::shared_ptr<OrvCPP::ICameraListObserver>& observer);
    virtual OrvErrorType
    UnregisterCameraListObserver(const std::shared_ptr<OrvCPP::ICameraListObserver>& observer);
    virtual OrvErrorType
    RegisterInterfaceListObserver(const std::shared_ptr<OrvCPP::IInterfaceListObserver>& observer);
    virtual OrvErrorType UnregisterInterfaceListObserver(
        const std::shared_ptr<OrvCPP::IInterfaceListObserver>& observer);
    virtual OrvErrorType
    RegisterCameraFactory(const std::shared_ptr<OrvCPP::ICameraFactory>& factory);
    virtual OrvErrorType UnregisterCameraFactory();
    virtual OrvErrorType
    GetTransportLayers(std::vector<std::shared_ptr<OrvTransportLayerWrapper>>& layers);
    virtual OrvErrorType GetTransportLayerByID(const char* id,
                                               std::shared_ptr<OrvCPP::TransportLayer>& found);
    /// Makes the handler of a camera, which opens it (defined beside the handler, in engine/).
    virtual std::shared_ptr<CameraHandler>
    CreateCameraHandler(const std::shared_ptr<OrvCameraWrapper>& camera);

private:
    OrvCPP::OrvSystem& m_system;
};
