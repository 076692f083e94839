// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvSystem.h"

#include <gmock/gmock.h>

/// The camera SDK's system object, mocked.
class MockOrvSystem : public OrvCPP::OrvSystem {
public:
    MOCK_METHOD(OrvErrorType, QueryVersion, (OrvVersionInfo&), (const, override));
    MOCK_METHOD(OrvErrorType, Startup, (), (override));
    MOCK_METHOD(OrvErrorType, Startup, (const wchar_t*), (override));
    MOCK_METHOD(OrvErrorType, Shutdown, (), (override));
    MOCK_METHOD(OrvErrorType, GetStartupError, (char*, std::uint32_t&), (const, override));
    MOCK_METHOD(OrvErrorType, GetInterfaces, (std::shared_ptr<OrvCPP::Interface>*, std::uint32_t&),
                (override));
    MOCK_METHOD(OrvErrorType, GetInterfaceByID, (const char*, std::shared_ptr<OrvCPP::Interface>&),
                (override));
    MOCK_METHOD(OrvErrorType, GetCameras, (std::shared_ptr<OrvCPP::Camera>*, std::uint32_t&),
                (override));
    MOCK_METHOD(OrvErrorType, GetCameraByID, (const char*, std::shared_ptr<OrvCPP::Camera>&),
                (override));
    MOCK_METHOD(OrvErrorType, GetTransportLayers,
                (std::shared_ptr<OrvCPP::TransportLayer>*, std::uint32_t&), (override));
    MOCK_METHOD(OrvErrorType, GetTransportLayerByID,
                (const char*, std::shared_ptr<OrvCPP::TransportLayer>&), (override));
    MOCK_METHOD(OrvErrorType, RegisterCameraListObserver,
                (const std::shared_ptr<OrvCPP::ICameraListObserver>&), (override));
    MOCK_METHOD(OrvErrorType, UnregisterCameraListObserver,
                (const std::shared_ptr<OrvCPP::ICameraListObserver>&), (override));
    MOCK_METHOD(OrvErrorType, RegisterInterfaceListObserver,
                (const std::shared_ptr<OrvCPP::IInterfaceListObserver>&), (override));
    MOCK_METHOD(OrvErrorType, UnregisterInterfaceListObserver,
                (const std::shared_ptr<OrvCPP::IInterfaceListObserver>&), (override));
    MOCK_METHOD(OrvErrorType, RegisterCameraFactory,
                (const std::shared_ptr<OrvCPP::ICameraFactory>&), (override));
    MOCK_METHOD(OrvErrorType, UnregisterCameraFactory, (), (override));
};
