// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/MockSdk.h"

#include <algorithm>

template <class Wrapper> MockWithFeatures<Wrapper>::MockWithFeatures() {
    ON_CALL(*this, GetFeatureByName)
        .WillByDefault([this](const char* name, std::shared_ptr<OrvFeatureWrapper>& feature) {
            const auto known = position(name);
            if (known == m_features.end())
                return OrvErrorType{OrvErrorNotFound};
            feature = known->second;
            return OrvErrorType{OrvErrorSuccess};
        });
    ON_CALL(*this, GetFeatures).WillByDefault([this](Features& features) {
        features.clear();
        for (const auto& feature : m_features)
            features.push_back(feature.second);
        return OrvErrorType{OrvErrorSuccess};
    });
}

template <class Wrapper>
NiceFeature MockWithFeatures<Wrapper>::addFeature(const std::string& name, NiceFeature feature) {
    ON_CALL(*feature, GetName).WillByDefault(answer(name));
    ON_CALL(*feature, GetDisplayName).WillByDefault(answer(name));
    removeFeature(name);
    m_features.emplace_back(name, feature);
    return feature;
}

template <class Wrapper> void MockWithFeatures<Wrapper>::removeFeature(const std::string& name) {
    const auto known = position(name);
    if (known != m_features.end())
        m_features.erase(known);
}

template <class Wrapper> auto MockWithFeatures<Wrapper>::position(const std::string& name) {
    return std::find_if(m_features.begin(), m_features.end(),
                        [&name](const auto& feature) { return feature.first == name; });
}

namespace {

template <class Wrapper> std::pair<std::shared_ptr<Wrapper>, OrvErrorType> notFound() {
    return {std::make_shared<Wrapper>(), OrvErrorNotFound};
}

} // namespace

MockCamera::MockCamera() {
    ON_CALL(*this, GetInterface()).WillByDefault(notFound<OrvInterfaceWrapper>);
    ON_CALL(*this, GetLocalDevice()).WillByDefault(notFound<OrvLocalDeviceWrapper>);
    ON_CALL(*this, GetTransportLayer()).WillByDefault(notFound<OrvTransportLayerWrapper>);
    ON_CALL(*this, GetPermittedAccess).WillByDefault(answer(OrvAccessModeFull));
}

template class testing::NiceMock<MockFeature>;
template class MockWithFeatures<OrvLocalDeviceWrapper>;
template class MockWithFeatures<OrvStreamWrapper>;
template class MockWithFeatures<OrvInterfaceWrapper>;
template class MockWithFeatures<OrvTransportLayerWrapper>;
template class MockWithFeatures<OrvCameraWrapper>;
template class testing::NiceMock<MockLocalDevice>;
template class testing::NiceMock<MockStream>;
template class testing::NiceMock<MockInterface>;
template class testing::NiceMock<MockTransportLayer>;
template class testing::NiceMock<MockCamera>;

NiceFeature makeFeature(OrvFeatureDataType type) {
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

namespace {

/// A feature that holds a value: what is set is what is got.
template <class Value> NiceFeature makeHolding(OrvFeatureDataType type, Value value) {
    auto feature = makeFeature(type);
    auto held = std::make_shared<Value>(value);
    ON_CALL(*feature, GetValue(testing::An<Value&>())).WillByDefault([held](Value& out) {
        out = *held;
        return OrvErrorType{OrvErrorSuccess};
    });
    using Argument = std::conditional_t<std::is_same_v<Value, std::string>, const char*, Value>;
    ON_CALL(*feature, SetValue(testing::An<Argument>())).WillByDefault([held](Argument in) {
        *held = in;
        return OrvErrorType{OrvErrorSuccess};
    });
    return feature;
}

template <class Value>
NiceFeature makeNumber(OrvFeatureDataType type, Value value, Value minimum, Value maximum,
                       Value increment) {
    auto feature = makeHolding(type, value);
    ON_CALL(*feature, GetRange(testing::An<Value&>(), testing::An<Value&>()))
        .WillByDefault([minimum, maximum](Value& low, Value& high) {
            low = minimum;
            high = maximum;
            return OrvErrorType{OrvErrorSuccess};
        });
    ON_CALL(*feature, GetIncrement(testing::An<Value&>())).WillByDefault(answer(increment));
    return feature;
}

} // namespace

NiceFeature makeIntFeature(std::int64_t value, std::int64_t minimum, std::int64_t maximum,
                           std::int64_t increment) {
    return makeNumber(OrvFeatureDataInt, value, minimum, maximum, increment);
}

NiceFeature makeFloatFeature(double value, double minimum, double maximum, double increment) {
    return makeNumber(OrvFeatureDataFloat, value, minimum, maximum, increment);
}

NiceFeature makeBoolFeature(bool value) {
    return makeHolding(OrvFeatureDataBool, value);
}

NiceFeature makeStringFeature(const std::string& value) {
    return makeHolding(OrvFeatureDataString, value);
}

NiceFeature makeCommandFeature() {
    auto feature = makeFeature(OrvFeatureDataCommand);
    ON_CALL(*feature, RunCommand).WillByDefault(testing::Return(OrvErrorType{OrvErrorSuccess}));
    ON_CALL(*feature, IsCommandDone).WillByDefault(answer(true));
    return feature;
}

NiceFeature makeEnumFeature(const std::string& value, const std::vector<std::string>& entries) {
    auto feature = makeHolding(OrvFeatureDataEnum, value);
    ON_CALL(*feature, GetValues).WillByDefault(answer(entries));
    ON_CALL(*feature, IsValueAvailable).WillByDefault([](const char*, bool& available) {
        available = true;
        return OrvErrorType{OrvErrorSuccess};
    });
    return feature;
}

std::shared_ptr<testing::NiceMock<MockCamera>> makeCamera(const std::string& id) {
    auto camera = std::make_shared<testing::NiceMock<MockCamera>>();
    ON_CALL(*camera, GetID).WillByDefault(answer(id));
    ON_CALL(*camera, GetName).WillByDefault(answer(std::string("Camera")));
    ON_CALL(*camera, GetModel).WillByDefault(answer(std::string("Model")));
    ON_CALL(*camera, GetSerialNumber).WillByDefault(answer(std::string("0001")));
    return camera;
}
