// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Camera.h"
#include "OrvCPP/Feature.h"
#include "OrvCPP/Forward.h"
#include "OrvCPP/Frame.h"
#include "OrvCPP/Interface.h"
#include "OrvCPP/LocalDevice.h"
#include "OrvCPP/OrvExport.h"
#include "OrvCPP/OrvTypes.h"
#include "OrvCPP/Stream.h"
#include "OrvCPP/TransportLayer.h"

#include <cstdint>
#include <memory>

namespace OrvCPP {

/// The camera SDK's one system object: it starts the providers of cameras and hands out what they
/// find. Thread-safe. Every operation but GetInstance, QueryVersion, Startup, Shutdown and
/// GetStartupError answers OrvErrorApiNotStarted while the SDK is not started.
class ORVCPP_API OrvSystem {
public:
    virtual ~OrvSystem() = default;

    static OrvSystem& GetInstance();

    virtual OrvErrorType QueryVersion(OrvVersionInfo& version) const = 0;
    /// Starts with the SDK's embedded configuration. OrvErrorAlreadyDone when it is started.
    virtual OrvErrorType Startup() = 0;
    /// Starts with a configuration file (JSON) that names the providers to start, with a scenario
    /// file of simulated cameras, or with an embedded scenario (":default", ":empty", ":faulty",
    /// ":oversubscribed", ":sixty-four"), or with real cameras (":genicam"). OrvErrorBadParameter
    /// when something is wrong with it: nothing is started then, and GetStartupError tells what.
    virtual OrvErrorType Startup(const wchar_t* pathConfiguration) = 0;
    /// Closes every camera, stops every thread and drops providers, observers and factory. What was
    /// handed out answers OrvErrorApiNotStarted from then on. OrvErrorInvalidCall when called from
    /// a callback of the SDK; success when the SDK is not started.
    virtual OrvErrorType Shutdown() = 0;
    /// What was wrong at the last Startup, for a person to read: the file, the line or key, and
    /// what was expected; empty after a success.
    virtual OrvErrorType GetStartupError(char* buffer, std::uint32_t& length) const = 0;

    virtual OrvErrorType GetInterfaces(std::shared_ptr<Interface>* interfaces,
                                       std::uint32_t& count) = 0;
    virtual OrvErrorType GetInterfaceByID(const char* id, std::shared_ptr<Interface>& found) = 0;
    virtual OrvErrorType GetCameras(std::shared_ptr<Camera>* cameras, std::uint32_t& count) = 0;
    virtual OrvErrorType GetCameraByID(const char* id, std::shared_ptr<Camera>& camera) = 0;
    virtual OrvErrorType GetTransportLayers(std::shared_ptr<TransportLayer>* layers,
                                            std::uint32_t& count) = 0;
    virtual OrvErrorType GetTransportLayerByID(const char* id,
                                               std::shared_ptr<TransportLayer>& layer) = 0;

    virtual OrvErrorType
    RegisterCameraListObserver(const std::shared_ptr<ICameraListObserver>& observer) = 0;
    virtual OrvErrorType
    UnregisterCameraListObserver(const std::shared_ptr<ICameraListObserver>& observer) = 0;
    virtual OrvErrorType
    RegisterInterfaceListObserver(const std::shared_ptr<IInterfaceListObserver>& observer) = 0;
    virtual OrvErrorType
    UnregisterInterfaceListObserver(const std::shared_ptr<IInterfaceListObserver>& observer) = 0;
    /// One factory at a time; takes effect for cameras found from then on.
    virtual OrvErrorType RegisterCameraFactory(const std::shared_ptr<ICameraFactory>& factory) = 0;
    virtual OrvErrorType UnregisterCameraFactory() = 0;
};

} // namespace OrvCPP
