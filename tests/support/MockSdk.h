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

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// Mocks of the camera SDK's wrappers, and features and cameras that answer sensibly by default.
// Every default is an ON_CALL: a test overrides what it is about. What no test asks for is not
// mocked and answers as a wrapper around nothing.

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
    MOCK_METHOD(std::shared_ptr<OrvCPP::FeatureContainer>, GetFeatureContainer, (),
                (const, override));

    MockWithFeatures() {
        ON_CALL(*this, GetFeatureByName)
            .WillByDefault([this](const char* name, std::shared_ptr<OrvFeatureWrapper>& feature) {
                return find(name, feature);
            });
        ON_CALL(*this, GetFeatures).WillByDefault([this](Features& features) {
            features.clear();
            for (const auto& feature : m_features)
                features.push_back(feature.second);
            return OrvErrorType{OrvErrorSuccess};
        });
    }

    /// Adds \p feature, or puts it in the place of the one of that name, and names it.
    NiceFeature addFeature(const std::string& name, NiceFeature feature) {
        ON_CALL(*feature, GetName).WillByDefault(answer(name));
        ON_CALL(*feature, GetDisplayName).WillByDefault(answer(name));
        removeFeature(name);
        m_features.emplace_back(name, feature);
        return feature;
    }

    void removeFeature(const std::string& name) {
        const auto isName = [&name](const auto& feature) {
            return feature.first == name;
        };
        m_features.erase(std::remove_if(m_features.begin(), m_features.end(), isName),
                         m_features.end());
    }

private:
    OrvErrorType find(const std::string& name, std::shared_ptr<OrvFeatureWrapper>& found) const {
        for (const auto& feature : m_features) {
            if (feature.first == name) {
                found = feature.second;
                return OrvErrorSuccess;
            }
        }
        return OrvErrorNotFound;
    }

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

    MockCamera() {
        ON_CALL(*this, GetInterface()).WillByDefault(notFound<OrvInterfaceWrapper>);
        ON_CALL(*this, GetLocalDevice()).WillByDefault(notFound<OrvLocalDeviceWrapper>);
        ON_CALL(*this, GetTransportLayer()).WillByDefault(notFound<OrvTransportLayerWrapper>);
        ON_CALL(*this, GetPermittedAccess).WillByDefault(answer(OrvAccessModeFull));
    }

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

private:
    template <class Wrapper> static WithResult<std::shared_ptr<Wrapper>> notFound() {
        return {std::make_shared<Wrapper>(), OrvErrorNotFound};
    }
};

/// A system object for wrappers that never ask it.
inline OrvCPP::OrvSystem& unusedOrvSystem() {
    static testing::NiceMock<MockOrvSystem> system;
    return system;
}

class MockSystem : public OrvSystemWrapper {
public:
    using Cameras = std::vector<std::shared_ptr<OrvCameraWrapper>>;

    MockSystem() : OrvSystemWrapper(unusedOrvSystem()) {}

    MOCK_METHOD(OrvErrorType, QueryVersion, (OrvVersionInfo&), (const, override));
    MOCK_METHOD(OrvErrorType, GetCameras, (Cameras&), (override));
    MOCK_METHOD(std::shared_ptr<CameraHandler>, CreateCameraHandler,
                (const std::shared_ptr<OrvCameraWrapper>&), (override));
};

/// A readable, writable, visible feature of a type, whose value cannot be accessed as any type yet.
inline NiceFeature makeFeature(OrvFeatureDataType type) {
    using testing::An;
    using testing::Return;

    auto feature = std::make_shared<testing::NiceMock<MockFeature>>();
    const auto wrongType = Return(OrvErrorType{OrvErrorWrongType});
    ON_CALL(*feature, GetValue(An<bool&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetValue(An<std::string&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetValue(An<double&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetValue(An<std::int64_t&>())).WillByDefault(wrongType);
    ON_CALL(*feature, SetValue(An<const char*>())).WillByDefault(wrongType);
    ON_CALL(*feature, SetValue(An<bool>())).WillByDefault(wrongType);
    ON_CALL(*feature, SetValue(An<double>())).WillByDefault(wrongType);
    ON_CALL(*feature, SetValue(An<std::int64_t>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetDataType).WillByDefault(answer(type));
    ON_CALL(*feature, GetVisibility).WillByDefault(answer(OrvFeatureVisibilityBeginner));
    ON_CALL(*feature, IsReadable).WillByDefault(answer(true));
    ON_CALL(*feature, IsWritable).WillByDefault(answer(true));
    return feature;
}

namespace MockSdkDetail {

/// Lets a feature hold a value: what is set is what is got.
template <class Value> void holdValue(MockFeature& feature, Value value) {
    auto held = std::make_shared<Value>(value);
    ON_CALL(feature, GetValue(testing::An<Value&>())).WillByDefault([held](Value& out) {
        out = *held;
        return OrvErrorType{OrvErrorSuccess};
    });
    using Argument = std::conditional_t<std::is_same_v<Value, std::string>, const char*, Value>;
    ON_CALL(feature, SetValue(testing::An<Argument>())).WillByDefault([held](Argument in) {
        *held = in;
        return OrvErrorType{OrvErrorSuccess};
    });
}

template <class Value>
NiceFeature makeNumber(OrvFeatureDataType type, Value value, Value minimum, Value maximum,
                       Value increment) {
    auto feature = makeFeature(type);
    holdValue(*feature, value);
    ON_CALL(*feature, GetRange(testing::An<Value&>(), testing::An<Value&>()))
        .WillByDefault([minimum, maximum](Value& low, Value& high) {
            low = minimum;
            high = maximum;
            return OrvErrorType{OrvErrorSuccess};
        });
    ON_CALL(*feature, GetIncrement(testing::An<Value&>())).WillByDefault(answer(increment));
    return feature;
}

} // namespace MockSdkDetail

/// An integer feature. It takes any value that is set; an increment of 0 means none.
inline NiceFeature makeIntFeature(std::int64_t value, std::int64_t minimum = 0,
                                  std::int64_t maximum = INT64_MAX, std::int64_t increment = 1) {
    return MockSdkDetail::makeNumber(OrvFeatureDataInt, value, minimum, maximum, increment);
}

/// A floating-point feature, like makeIntFeature.
inline NiceFeature makeFloatFeature(double value, double minimum = 0.0, double maximum = 1e9,
                                    double increment = 0.0) {
    return MockSdkDetail::makeNumber(OrvFeatureDataFloat, value, minimum, maximum, increment);
}

inline NiceFeature makeBoolFeature(bool value) {
    auto feature = makeFeature(OrvFeatureDataBool);
    MockSdkDetail::holdValue(*feature, value);
    return feature;
}

inline NiceFeature makeStringFeature(const std::string& value) {
    auto feature = makeFeature(OrvFeatureDataString);
    MockSdkDetail::holdValue(*feature, value);
    return feature;
}

/// A command that is done at once.
inline NiceFeature makeCommandFeature() {
    auto feature = makeFeature(OrvFeatureDataCommand);
    ON_CALL(*feature, RunCommand).WillByDefault(testing::Return(OrvErrorType{OrvErrorSuccess}));
    ON_CALL(*feature, IsCommandDone).WillByDefault(answer(true));
    return feature;
}

/// An enumeration of entries that are all available.
inline NiceFeature makeEnumFeature(const std::string& value,
                                   const std::vector<std::string>& entries) {
    auto feature = makeFeature(OrvFeatureDataEnum);
    MockSdkDetail::holdValue(*feature, value);
    ON_CALL(*feature, GetValues).WillByDefault(answer(entries));
    ON_CALL(*feature, IsValueAvailable).WillByDefault([](const char*, bool& available) {
        available = true;
        return OrvErrorType{OrvErrorSuccess};
    });
    return feature;
}

/// Who a mocked camera says it is.
struct MockIdentity {
    std::string id = "DEV_1";
    std::string name = "Camera";
    std::string model = "Model";
    std::string serialNumber = "0001";
};

/// A camera with an identity, without features, local device and streams.
inline std::shared_ptr<testing::NiceMock<MockCamera>>
makeCamera(const MockIdentity& identity = {}) {
    auto camera = std::make_shared<testing::NiceMock<MockCamera>>();
    ON_CALL(*camera, GetID).WillByDefault(answer(identity.id));
    ON_CALL(*camera, GetName).WillByDefault(answer(identity.name));
    ON_CALL(*camera, GetModel).WillByDefault(answer(identity.model));
    ON_CALL(*camera, GetSerialNumber).WillByDefault(answer(identity.serialNumber));
    return camera;
}
