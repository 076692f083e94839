// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvFeatureWrapper.h"
#include "sdk/OrvInterfaceWrapper.h"
#include "sdk/OrvLocalDeviceWrapper.h"
#include "sdk/OrvStreamWrapper.h"
#include "sdk/OrvSystemWrapper.h"
#include "sdk/OrvTransportLayerWrapper.h"
#include "tests/support/MockOrvSystem.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Mocks of the camera SDK's wrappers, and features and cameras that answer sensibly by default.
// Every default is an ON_CALL, which a test can override. Operations that no test uses are not
// mocked and answer OrvErrorBadHandle, as a wrapper without an SDK object does.

class MockFeature : public OrvFeatureWrapper {
public:
    MOCK_METHOD(OrvErrorType, GetValue, (bool&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValue, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValue, (double&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValue, (std::int64_t&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValues, (std::vector<std::string>&), (const, override));
    MOCK_METHOD(OrvErrorType, GetRange, (std::int64_t&, std::int64_t&), (const, override));
    MOCK_METHOD(OrvErrorType, GetRange, (double&, double&), (const, override));
    MOCK_METHOD(OrvErrorType, SetValue, (const char*), (override));
    MOCK_METHOD(OrvErrorType, SetValue, (bool), (override));
    MOCK_METHOD(OrvErrorType, SetValue, (double), (override));
    MOCK_METHOD(OrvErrorType, SetValue, (std::int64_t), (override));
    MOCK_METHOD(OrvErrorType, GetIncrement, (double&), (const, override));
    MOCK_METHOD(OrvErrorType, GetIncrement, (std::int64_t&), (const, override));
    MOCK_METHOD(OrvErrorType, IsValueAvailable, (const char*, bool&), (const, override));
    MOCK_METHOD(OrvErrorType, RunCommand, (), (override));
    MOCK_METHOD(OrvErrorType, IsCommandDone, (bool&), (const, override));
    MOCK_METHOD(OrvErrorType, GetName, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetDisplayName, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetDataType, (OrvFeatureDataType&), (const, override));
    MOCK_METHOD(OrvErrorType, GetCategory, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetUnit, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetRepresentation, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetVisibility, (OrvFeatureVisibilityType&), (const, override));
    MOCK_METHOD(OrvErrorType, GetToolTip, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetDescription, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, IsReadable, (bool&), (const, override));
    MOCK_METHOD(OrvErrorType, IsWritable, (bool&), (const, override));
};

using NiceFeature = std::shared_ptr<testing::NiceMock<MockFeature>>;

/// Action: stores a value in the mocked operation's first argument, even when it fails.
template <class Value> auto answer(Value value, OrvErrorType result = OrvErrorSuccess) {
    return [value, result](auto& out, auto&&...) {
        out = value;
        return result;
    };
}

/// A wrapper with features added by name; looks them up in its list by default.
template <class Wrapper> class MockWithFeatures : public Wrapper {
public:
    using Features = std::vector<std::shared_ptr<OrvFeatureWrapper>>;

    MOCK_METHOD(OrvErrorType, GetFeatureByName, (const char*, std::shared_ptr<OrvFeatureWrapper>&),
                (const, override));
    MOCK_METHOD(OrvErrorType, GetFeatures, (Features&), (const, override));

    MockWithFeatures();

    /// Adds \p feature, or puts it in the place of the one of that name, and names it.
    NiceFeature addFeature(const std::string& name, NiceFeature feature);
    void removeFeature(const std::string& name);

private:
    auto position(const std::string& name);

    std::vector<std::pair<std::string, NiceFeature>> m_features;
};

using MockLocalDevice = MockWithFeatures<OrvLocalDeviceWrapper>;
using MockStream = MockWithFeatures<OrvStreamWrapper>;

class MockInterface : public MockWithFeatures<OrvInterfaceWrapper> {
public:
    MOCK_METHOD(OrvErrorType, GetID, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetType, (OrvTransportLayerType&), (const, override));
    MOCK_METHOD(OrvErrorType, GetName, (std::string&), (const, override));
};

class MockTransportLayer : public MockWithFeatures<OrvTransportLayerWrapper> {
public:
    MOCK_METHOD(OrvErrorType, GetID, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetName, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetVendor, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetPath, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetType, (OrvTransportLayerType&), (const, override));
};

class MockCamera : public MockWithFeatures<OrvCameraWrapper> {
public:
    using Interface = std::shared_ptr<OrvInterfaceWrapper>;
    using LocalDevice = std::shared_ptr<OrvLocalDeviceWrapper>;
    using Layer = std::shared_ptr<OrvTransportLayerWrapper>;
    using Streams = std::vector<std::shared_ptr<OrvStreamWrapper>>;
    template <class Wrapper> using WithResult = std::pair<Wrapper, OrvErrorType>;

    MockCamera();

    MOCK_METHOD(OrvErrorType, Open, (OrvAccessModeType), (override));
    MOCK_METHOD(OrvErrorType, Close, (), (override));
    MOCK_METHOD(OrvErrorType, GetID, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetName, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetModel, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetSerialNumber, (std::string&), (const, override));
    MOCK_METHOD(WithResult<Interface>, GetInterface, (), (const, override));
    MOCK_METHOD(OrvErrorType, GetInterface, (Interface&), (const, override));
    MOCK_METHOD(WithResult<LocalDevice>, GetLocalDevice, (), (const, override));
    MOCK_METHOD(OrvErrorType, GetLocalDevice, (LocalDevice&), (const, override));
    MOCK_METHOD(WithResult<Layer>, GetTransportLayer, (), (const, override));
    MOCK_METHOD(OrvErrorType, GetTransportLayer, (Layer&), (const, override));
    MOCK_METHOD(OrvErrorType, GetStreams, (Streams&), (const, override));
    MOCK_METHOD(OrvErrorType, GetPermittedAccess, (OrvAccessModeType&), (const, override));
    MOCK_METHOD(OrvErrorType, StartContinuousImageAcquisition,
                (int, const std::shared_ptr<OrvCPP::IFrameObserver>&, FrameAllocationMode),
                (override));
    MOCK_METHOD(OrvErrorType, StopContinuousImageAcquisition, (), (override));
    MOCK_METHOD(OrvErrorType, QueueFrame, (const std::shared_ptr<OrvCPP::Frame>&), (override));
};

/// A system object for wrappers that never call it.
OrvCPP::OrvSystem& unusedOrvSystem();

class MockSystem : public OrvSystemWrapper {
public:
    using Cameras = std::vector<std::shared_ptr<OrvCameraWrapper>>;

    MockSystem();

    MOCK_METHOD(OrvErrorType, QueryVersion, (OrvVersionInfo&), (const, override));
    MOCK_METHOD(OrvErrorType, GetCameras, (Cameras&), (override));
    MOCK_METHOD(std::shared_ptr<CameraHandler>, CreateCameraHandler,
                (const std::shared_ptr<OrvCameraWrapper>&), (override));
};

// Compiled once, in MockSdk.cpp and MockSystem.cpp: instantiating mocks takes 20 s per test file.
extern template class testing::NiceMock<MockFeature>;
extern template class MockWithFeatures<OrvLocalDeviceWrapper>;
extern template class MockWithFeatures<OrvStreamWrapper>;
extern template class MockWithFeatures<OrvInterfaceWrapper>;
extern template class MockWithFeatures<OrvTransportLayerWrapper>;
extern template class MockWithFeatures<OrvCameraWrapper>;
extern template class testing::NiceMock<MockLocalDevice>;
extern template class testing::NiceMock<MockStream>;
extern template class testing::NiceMock<MockInterface>;
extern template class testing::NiceMock<MockTransportLayer>;
extern template class testing::NiceMock<MockCamera>;
extern template class testing::NiceMock<MockSystem>;

/// A readable, writable, visible feature of a type, whose value cannot be accessed as any type yet.
NiceFeature makeFeature(OrvFeatureDataType type);

/// An integer feature. It takes any value that is set; an increment of 0 means none.
NiceFeature makeIntFeature(std::int64_t value, std::int64_t minimum = 0,
                           std::int64_t maximum = INT64_MAX, std::int64_t increment = 1);

/// A floating-point feature, like makeIntFeature.
NiceFeature makeFloatFeature(double value, double minimum = 0.0, double maximum = 1e9,
                             double increment = 0.0);
NiceFeature makeBoolFeature(bool value);
NiceFeature makeStringFeature(const std::string& value);

/// A command that is done at once.
NiceFeature makeCommandFeature();

/// An enumeration of entries that are all available.
NiceFeature makeEnumFeature(const std::string& value, const std::vector<std::string>& entries);

/// "Model" 0001 of the name "Camera", without features, local device and streams.
std::shared_ptr<testing::NiceMock<MockCamera>> makeCamera(const std::string& id = "DEV_1");
