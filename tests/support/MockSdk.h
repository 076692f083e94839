// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvFeatureWrapper.h"
#include "sdk/OrvFrameWrapper.h"
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
// Every default is an ON_CALL: a test overrides what it is about.

class MockFeature : public OrvFeatureWrapper {
public:
    using Bytes = std::vector<std::uint8_t>;
    using Features = std::vector<std::shared_ptr<OrvFeatureWrapper>>;
    using Observer = std::shared_ptr<OrvCPP::IFeatureObserver>;

    MOCK_METHOD(OrvErrorType, GetValue, (Bytes&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValue, (Bytes&, std::uint32_t&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValue, (bool&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValue, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValue, (double&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValue, (std::int64_t&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValues, (std::vector<std::string>&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValues, (std::vector<std::int64_t>&), (const, override));
    MOCK_METHOD(OrvErrorType, GetEntry, (OrvCPP::EnumEntry&, const char*), (const, override));
    MOCK_METHOD(OrvErrorType, GetEntries, (std::vector<OrvCPP::EnumEntry>&), (const, override));
    MOCK_METHOD(OrvErrorType, GetRange, (std::int64_t&, std::int64_t&), (const, override));
    MOCK_METHOD(OrvErrorType, GetRange, (double&, double&), (const, override));
    MOCK_METHOD(OrvErrorType, SetValue, (const std::uint8_t*, std::uint32_t), (override));
    MOCK_METHOD(OrvErrorType, SetValue, (const char*), (override));
    MOCK_METHOD(OrvErrorType, SetValue, (bool), (override));
    MOCK_METHOD(OrvErrorType, SetValue, (double), (override));
    MOCK_METHOD(OrvErrorType, SetValue, (std::int64_t), (override));
    MOCK_METHOD(OrvErrorType, HasIncrement, (bool&), (const, override));
    MOCK_METHOD(OrvErrorType, GetIncrement, (double&), (const, override));
    MOCK_METHOD(OrvErrorType, GetIncrement, (std::int64_t&), (const, override));
    MOCK_METHOD(OrvErrorType, IsValueAvailable, (std::int64_t, bool&), (const, override));
    MOCK_METHOD(OrvErrorType, IsValueAvailable, (const char*, bool&), (const, override));
    MOCK_METHOD(OrvErrorType, RunCommand, (), (override));
    MOCK_METHOD(OrvErrorType, IsCommandDone, (bool&), (const, override));
    MOCK_METHOD(OrvErrorType, GetName, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetDisplayName, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetDataType, (OrvFeatureDataType&), (const, override));
    MOCK_METHOD(OrvErrorType, GetFlags, (OrvFeatureFlagsType&), (const, override));
    MOCK_METHOD(OrvErrorType, GetCategory, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetUnit, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetRepresentation, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetVisibility, (OrvFeatureVisibilityType&), (const, override));
    MOCK_METHOD(OrvErrorType, GetToolTip, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetDescription, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetSelectedFeatures, (Features&), (const, override));
    MOCK_METHOD(OrvErrorType, GetValidValueSet, (std::vector<std::int64_t>&), (const, override));
    MOCK_METHOD(OrvErrorType, IsReadable, (bool&), (const, override));
    MOCK_METHOD(OrvErrorType, IsWritable, (bool&), (const, override));
    MOCK_METHOD(OrvErrorType, RegisterObserver, (const Observer&), (override));
    MOCK_METHOD(OrvErrorType, UnregisterObserver, (const Observer&), (override));
};

using NiceFeature = std::shared_ptr<testing::NiceMock<MockFeature>>;

/// Action: stores a value in the mocked operation's first argument and answers success.
template <class Value> auto answer(Value value) {
    return [value](auto& out, auto&&...) {
        out = value;
        return OrvErrorType{OrvErrorSuccess};
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

using MockContainer = MockWithFeatures<OrvFeatureContainerWrapper>;
using MockLocalDevice = MockWithFeatures<OrvLocalDeviceWrapper>;

class MockInterface : public MockWithFeatures<OrvInterfaceWrapper> {
public:
    using Cameras = std::vector<std::shared_ptr<OrvCameraWrapper>>;

    MOCK_METHOD(OrvErrorType, GetID, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetType, (OrvTransportLayerType&), (const, override));
    MOCK_METHOD(OrvErrorType, GetName, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetTransportLayer, (std::shared_ptr<OrvCPP::TransportLayer>&),
                (const, override));
    MOCK_METHOD(OrvErrorType, GetCameras, (Cameras&), (const, override));
};

class MockTransportLayer : public MockWithFeatures<OrvTransportLayerWrapper> {
public:
    using Interfaces = std::vector<std::shared_ptr<OrvInterfaceWrapper>>;
    using Cameras = std::vector<std::shared_ptr<OrvCameraWrapper>>;

    MOCK_METHOD(OrvErrorType, GetInterfaces, (Interfaces&), (const, override));
    MOCK_METHOD(OrvErrorType, GetCameras, (Cameras&), (const, override));
    MOCK_METHOD(OrvErrorType, GetID, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetName, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetModelName, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetVendor, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetVersion, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetPath, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetType, (OrvTransportLayerType&), (const, override));
};

class MockStream : public MockWithFeatures<OrvStreamWrapper> {
public:
    using Frame = std::shared_ptr<OrvCPP::Frame>;

    MOCK_METHOD(OrvErrorType, Open, (), (override));
    MOCK_METHOD(OrvErrorType, Close, (), (override));
    MOCK_METHOD(OrvErrorType, AnnounceFrame, (const Frame&), (override));
    MOCK_METHOD(OrvErrorType, RevokeFrame, (const Frame&), (override));
    MOCK_METHOD(OrvErrorType, RevokeAllFrames, (), (override));
    MOCK_METHOD(OrvErrorType, QueueFrame, (const Frame&), (override));
    MOCK_METHOD(OrvErrorType, FlushQueue, (), (override));
    MOCK_METHOD(OrvErrorType, StartCapture, (), (override));
    MOCK_METHOD(OrvErrorType, EndCapture, (), (override));
    MOCK_METHOD(OrvErrorType, GetStreamBufferAlignment, (std::uint32_t&), (const, override));
};

class MockCamera : public MockWithFeatures<OrvCameraWrapper> {
public:
    using Interface = std::shared_ptr<OrvInterfaceWrapper>;
    using LocalDevice = std::shared_ptr<OrvLocalDeviceWrapper>;
    using Layer = std::shared_ptr<OrvTransportLayerWrapper>;
    using Streams = std::vector<std::shared_ptr<OrvStreamWrapper>>;
    using Bytes = std::vector<std::uint8_t>;
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
    MOCK_METHOD(OrvErrorType, GetExtendedID, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetName, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetModel, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetSerialNumber, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetInterfaceID, (std::string&), (const, override));
    MOCK_METHOD(OrvErrorType, GetInterfaceType, (OrvTransportLayerType&), (const, override));
    MOCK_METHOD(WithResult<Interface>, GetInterface, (), (const, override));
    MOCK_METHOD(OrvErrorType, GetInterface, (Interface&), (const, override));
    MOCK_METHOD(WithResult<LocalDevice>, GetLocalDevice, (), (const, override));
    MOCK_METHOD(OrvErrorType, GetLocalDevice, (LocalDevice&), (const, override));
    MOCK_METHOD(WithResult<Layer>, GetTransportLayer, (), (const, override));
    MOCK_METHOD(OrvErrorType, GetTransportLayer, (Layer&), (const, override));
    MOCK_METHOD(OrvErrorType, GetStreams, (Streams&), (const, override));
    MOCK_METHOD(OrvErrorType, GetPermittedAccess, (OrvAccessModeType&), (const, override));
    MOCK_METHOD(OrvErrorType, ReadMemory, (std::uint64_t, Bytes&), (const, override));
    MOCK_METHOD(OrvErrorType, ReadMemory, (std::uint64_t, Bytes&, std::uint32_t&),
                (const, override));
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

class MockFrame : public OrvFrameWrapper {
public:
    MOCK_METHOD(OrvErrorType, GetBufferSize, (std::uint32_t&), (const, override));
    MOCK_METHOD(OrvErrorType, GetFrameID, (std::uint64_t&), (const, override));
    MOCK_METHOD(OrvErrorType, GetReceiveStatus, (OrvFrameStatusType&), (const, override));
    MOCK_METHOD(OrvErrorType, GetTimestamp, (std::uint64_t&), (const, override));
};

/// A system object for wrappers that never ask it.
inline OrvCPP::OrvSystem& unusedOrvSystem() {
    static testing::NiceMock<MockOrvSystem> system;
    return system;
}

class MockSystem : public OrvSystemWrapper {
public:
    using Interfaces = std::vector<std::shared_ptr<OrvInterfaceWrapper>>;
    using Cameras = std::vector<std::shared_ptr<OrvCameraWrapper>>;
    using Layers = std::vector<std::shared_ptr<OrvTransportLayerWrapper>>;

    explicit MockSystem(OrvCPP::OrvSystem& system = unusedOrvSystem()) : OrvSystemWrapper(system) {}

    MOCK_METHOD(OrvErrorType, QueryVersion, (OrvVersionInfo&), (const, override));
    MOCK_METHOD(OrvErrorType, Startup, (), (override));
    MOCK_METHOD(OrvErrorType, Startup, (const wchar_t*), (override));
    MOCK_METHOD(OrvErrorType, Shutdown, (), (override));
    MOCK_METHOD(OrvErrorType, GetInterfaces, (Interfaces&), (override));
    MOCK_METHOD(OrvErrorType, GetInterfaceByID, (const char*, std::shared_ptr<OrvCPP::Interface>&),
                (override));
    MOCK_METHOD(OrvErrorType, GetCameras, (Cameras&), (override));
    MOCK_METHOD(OrvErrorType, GetCameraByID, (const char*, std::shared_ptr<OrvCPP::Camera>&),
                (override));
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
    MOCK_METHOD(OrvErrorType, GetTransportLayers, (Layers&), (override));
    MOCK_METHOD(OrvErrorType, GetTransportLayerByID,
                (const char*, std::shared_ptr<OrvCPP::TransportLayer>&), (override));
    MOCK_METHOD(std::shared_ptr<CameraHandler>, CreateCameraHandler,
                (const std::shared_ptr<OrvCameraWrapper>&), (override));
};

/// A readable, writable, visible feature of a type, whose value cannot be accessed as any type yet.
inline NiceFeature makeFeature(OrvFeatureDataType type) {
    using testing::_;
    using testing::An;
    using testing::Return;

    auto feature = std::make_shared<testing::NiceMock<MockFeature>>();
    const auto wrongType = Return(OrvErrorType{OrvErrorWrongType});
    ON_CALL(*feature, GetValue(An<MockFeature::Bytes&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetValue(_, _)).WillByDefault(wrongType);
    ON_CALL(*feature, GetValue(An<bool&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetValue(An<std::string&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetValue(An<double&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetValue(An<std::int64_t&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetValues(An<std::vector<std::string>&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetValues(An<std::vector<std::int64_t>&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetEntry).WillByDefault(wrongType);
    ON_CALL(*feature, GetEntries).WillByDefault(wrongType);
    ON_CALL(*feature, GetRange(An<std::int64_t&>(), An<std::int64_t&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetRange(An<double&>(), An<double&>())).WillByDefault(wrongType);
    ON_CALL(*feature, SetValue(_, _)).WillByDefault(wrongType);
    ON_CALL(*feature, SetValue(An<const char*>())).WillByDefault(wrongType);
    ON_CALL(*feature, SetValue(An<bool>())).WillByDefault(wrongType);
    ON_CALL(*feature, SetValue(An<double>())).WillByDefault(wrongType);
    ON_CALL(*feature, SetValue(An<std::int64_t>())).WillByDefault(wrongType);
    ON_CALL(*feature, HasIncrement).WillByDefault(answer(false));
    ON_CALL(*feature, GetIncrement(An<double&>())).WillByDefault(wrongType);
    ON_CALL(*feature, GetIncrement(An<std::int64_t&>())).WillByDefault(wrongType);
    ON_CALL(*feature, IsValueAvailable(An<std::int64_t>(), _)).WillByDefault(wrongType);
    ON_CALL(*feature, IsValueAvailable(An<const char*>(), _)).WillByDefault(wrongType);
    ON_CALL(*feature, RunCommand).WillByDefault(wrongType);
    ON_CALL(*feature, IsCommandDone).WillByDefault(wrongType);
    ON_CALL(*feature, GetDataType).WillByDefault(answer(type));
    ON_CALL(*feature, GetFlags)
        .WillByDefault(answer(OrvFeatureFlagsType(OrvFeatureFlagsRead | OrvFeatureFlagsWrite)));
    ON_CALL(*feature, GetVisibility).WillByDefault(answer(OrvFeatureVisibilityBeginner));
    ON_CALL(*feature, GetValidValueSet)
        .WillByDefault(Return(OrvErrorType{OrvErrorValidValueSetNotPresent}));
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
    ON_CALL(*feature, HasIncrement).WillByDefault(answer(increment != Value{}));
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

/// An enumeration whose entries are numbered from 0 and all available.
inline NiceFeature makeEnumFeature(const std::string& value,
                                   const std::vector<std::string>& entries) {
    using testing::An;
    auto feature = makeFeature(OrvFeatureDataEnum);
    auto held = std::make_shared<std::string>(value);
    const auto position = [entries](const std::string& name) {
        return std::find(entries.begin(), entries.end(), name) - entries.begin();
    };
    const auto known = [entries, position](const std::string& name) {
        return position(name) < static_cast<std::ptrdiff_t>(entries.size());
    };
    const auto entry = [position](const std::string& name) {
        OrvCPP::EnumEntry result;
        result.name = result.displayName = name;
        result.visibility = OrvFeatureVisibilityBeginner;
        result.value = position(name);
        return result;
    };

    ON_CALL(*feature, GetValue(An<std::string&>())).WillByDefault([held](std::string& out) {
        out = *held;
        return OrvErrorType{OrvErrorSuccess};
    });
    ON_CALL(*feature, GetValue(An<std::int64_t&>()))
        .WillByDefault([held, position](std::int64_t& out) {
            out = position(*held);
            return OrvErrorType{OrvErrorSuccess};
        });
    ON_CALL(*feature, SetValue(An<const char*>())).WillByDefault([held, known](const char* name) {
        if (!known(name))
            return OrvErrorType{OrvErrorInvalidValue};
        *held = name;
        return OrvErrorType{OrvErrorSuccess};
    });
    ON_CALL(*feature, SetValue(An<std::int64_t>()))
        .WillByDefault([held, entries](std::int64_t number) {
            if (number < 0 || number >= static_cast<std::int64_t>(entries.size()))
                return OrvErrorType{OrvErrorInvalidValue};
            *held = entries[static_cast<std::size_t>(number)];
            return OrvErrorType{OrvErrorSuccess};
        });
    ON_CALL(*feature, GetValues(An<std::vector<std::string>&>())).WillByDefault(answer(entries));
    ON_CALL(*feature, GetValues(An<std::vector<std::int64_t>&>()))
        .WillByDefault([entries, position](std::vector<std::int64_t>& out) {
            out.clear();
            for (const auto& name : entries)
                out.push_back(position(name));
            return OrvErrorType{OrvErrorSuccess};
        });
    ON_CALL(*feature, GetEntry)
        .WillByDefault([known, entry](OrvCPP::EnumEntry& out, const char* name) {
            if (!known(name))
                return OrvErrorType{OrvErrorInvalidValue};
            out = entry(name);
            return OrvErrorType{OrvErrorSuccess};
        });
    ON_CALL(*feature, GetEntries)
        .WillByDefault([entries, entry](std::vector<OrvCPP::EnumEntry>& out) {
            out.clear();
            for (const auto& name : entries)
                out.push_back(entry(name));
            return OrvErrorType{OrvErrorSuccess};
        });
    ON_CALL(*feature, IsValueAvailable(An<std::int64_t>(), testing::_))
        .WillByDefault([entries](std::int64_t number, bool& available) {
            available = number >= 0 && number < static_cast<std::int64_t>(entries.size());
            return OrvErrorType{OrvErrorSuccess};
        });
    ON_CALL(*feature, IsValueAvailable(An<const char*>(), testing::_))
        .WillByDefault([known](const char* name, bool& available) {
            available = known(name);
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
    std::string interfaceId = "IF_1";
    OrvTransportLayerType interfaceType = OrvTransportLayerTypeGEV;
};

/// A camera with an identity, without features, local device and streams.
inline std::shared_ptr<testing::NiceMock<MockCamera>>
makeCamera(const MockIdentity& identity = {}) {
    auto camera = std::make_shared<testing::NiceMock<MockCamera>>();
    ON_CALL(*camera, GetID).WillByDefault(answer(identity.id));
    ON_CALL(*camera, GetExtendedID).WillByDefault(answer(identity.id));
    ON_CALL(*camera, GetName).WillByDefault(answer(identity.name));
    ON_CALL(*camera, GetModel).WillByDefault(answer(identity.model));
    ON_CALL(*camera, GetSerialNumber).WillByDefault(answer(identity.serialNumber));
    ON_CALL(*camera, GetInterfaceID).WillByDefault(answer(identity.interfaceId));
    ON_CALL(*camera, GetInterfaceType).WillByDefault(answer(identity.interfaceType));
    return camera;
}
