// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraHandler.h"
#include "features/FeatureController.h"
#include "tests/support/CameraParts.h"
#include "tests/support/CapturedLog.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Action: answers an SDK error that is none of those with a meaning of their own.
inline auto ioError() {
    return testing::Return(OrvErrorType{OrvErrorIO});
}

inline const std::string ioErrorText = " (Low level IO error in transport layer)";

/// How messages about the camera of CameraParts begin, after the prefix.
inline const std::string cameraText = "Model-0001 (DEV_1)";

/// Features in memory: what a test puts in is what the handler finds, and what it writes is kept.
class FakeFeatures : public FeatureController {
public:
    FakeFeatures() : FeatureController(std::make_shared<testing::NiceMock<MockCamera>>(), "Fake") {}

    void put(const std::string& feature, FeatureValue value, const std::string& module = "Camera") {
        m_features[{module, feature}].value = std::move(value);
    }
    void remove(const std::string& feature) { m_features.erase({"Camera", feature}); }
    void putRange(const std::string& feature, FeatureValue value, FeatureValue minimum,
                  FeatureValue maximum, FeatureValue increment = std::int64_t{0}) {
        FeatureInfo& info = m_features[{"Camera", feature}];
        info.value = std::move(value);
        info.minimum = std::move(minimum);
        info.maximum = std::move(maximum);
        info.increment = std::move(increment);
    }

    bool hasFeature(const std::string& module, const std::string& feature) const override {
        return m_features.count({module, feature}) > 0;
    }
    FeatureValue getFeatureValue(const std::string& module,
                                 const std::string& feature) const override {
        return getInfo(module, feature).value;
    }
    FeatureInfo getFeatureInfo(const std::string& module,
                               const std::string& feature) const override {
        ++descriptionsRead;
        return getInfo(module, feature);
    }
    bool setFeatureValue(const std::string& module, const std::string& feature,
                         const FeatureValue& value) override {
        if (!writable)
            return false;
        if (accepts && !accepts(std::get<std::int64_t>(value))) {
            ++refused;
            return false;
        }
        m_features[{module, feature}].value = value;
        written.push_back(std::get<std::int64_t>(value));
        if (onWrite)
            onWrite(written.back());
        return true;
    }

    bool writable = true;
    std::vector<std::int64_t> written;
    /// Which limits the camera takes; empty for all.
    std::function<bool(std::int64_t)> accepts;
    int refused = 0;
    mutable int descriptionsRead = 0;
    std::function<void(std::int64_t)> onWrite;

private:
    FeatureInfo getInfo(const std::string& module, const std::string& feature) const {
        const auto found = m_features.find({module, feature});
        return found == m_features.end() ? FeatureInfo() : found->second;
    }

    std::map<std::pair<std::string, std::string>, FeatureInfo> m_features;
};

/// A handler over mocked parts and features in memory.
struct HandlerWithFakes {
    explicit HandlerWithFakes(OrvTransportLayerType type = OrvTransportLayerTypeGEV)
        : parts(type), handler(parts.camera, features) {
        log.clear();
    }

    CapturedLog log;
    CameraParts parts;
    std::shared_ptr<FakeFeatures> features = std::make_shared<FakeFeatures>();
    CameraHandler handler;
};
