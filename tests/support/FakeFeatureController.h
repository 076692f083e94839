// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureController.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// A camera's features in memory, which counts what it is asked for.
class FakeFeatureController : public FeatureController {
public:
    using Key = std::pair<std::string, std::string>;

    /// \p modules are those with features to list; others can have features to read and write.
    explicit FakeFeatureController(std::vector<std::string> modules = {})
        : FeatureController(nullptr, "Cam"), m_modules(std::move(modules)) {}

    /// A feature that is listed, and that can be read and written.
    FeatureInfo& add(const std::string& module, const std::string& category,
                     const std::string& name, OrvFeatureDataType type = OrvFeatureDataInt,
                     FeatureValue value = {}) {
        m_categories[module][category].push_back(name);
        FeatureInfo& info = features[{module, name}];
        info.name = name;
        info.category = category;
        info.displayName = "The " + name;
        info.toolTip = "Tip of " + name;
        info.readable = info.writable = true;
        info.dataType = type;
        info.value = std::move(value);
        return info;
    }
    /// A feature that is found by its name only.
    FeatureInfo& put(const std::string& name, FeatureValue value,
                     const std::string& module = cameraModule) {
        FeatureInfo& info = features[{module, name}];
        info.value = std::move(value);
        return info;
    }
    void putLimit(FeatureValue value, FeatureValue minimum, FeatureValue maximum,
                  FeatureValue increment = std::int64_t{0}) {
        FeatureInfo& info = put("DeviceLinkThroughputLimit", std::move(value));
        info.minimum = std::move(minimum);
        info.maximum = std::move(maximum);
        info.increment = std::move(increment);
    }

    std::vector<std::string> getModuleNames() const override { return m_modules; }
    Categories getFeaturesByCategory(const std::string& module) const override {
        const auto found = m_categories.find(module);
        return found == m_categories.end() ? Categories() : found->second;
    }
    bool hasFeature(const std::string& module, const std::string& name) const override {
        return features.count({module, name}) > 0;
    }
    FeatureValue getFeatureValue(const std::string& module,
                                 const std::string& name) const override {
        const auto found = features.find({module, name});
        return found == features.end() ? FeatureValue() : found->second.value;
    }
    FeatureInfo getFeatureInfo(const std::string& module, const std::string& name) const override {
        ++reads[name];
        FeatureInfo info = features.at({module, name});
        info.value = getFeatureValue(module, name);
        return info;
    }
    FeatureInfo getFeatureOutline(const std::string& module,
                                  const std::string& name) const override {
        ++outlines[name];
        FeatureInfo outline;
        outline.displayName = features.at({module, name}).displayName;
        outline.writable = features.at({module, name}).writable;
        return outline;
    }
    bool setFeatureValue(const std::string& module, const std::string& name,
                         const FeatureValue& value) override {
        if (refuses || (accepts && !accepts(std::get<std::int64_t>(value))))
            return false;
        written.emplace_back(name, value);
        features.at({module, name}).value = value;
        if (onWrite)
            onWrite();
        return true;
    }
    bool runCommand(const std::string&, const std::string& name, double timeoutMs) override {
        commands.emplace_back(name, timeoutMs);
        return !refuses;
    }

    std::vector<std::int64_t> writtenIntegers() const {
        std::vector<std::int64_t> values;
        for (const auto& [name, value] : written)
            values.push_back(std::get<std::int64_t>(value));
        return values;
    }

    std::map<Key, FeatureInfo> features;
    /// Values and commands.
    bool refuses = false;
    /// Which integers the camera takes; empty for all.
    std::function<bool(std::int64_t)> accepts;
    std::function<void()> onWrite;
    std::vector<std::pair<std::string, FeatureValue>> written;
    std::vector<std::pair<std::string, double>> commands;
    /// How often each description, and each outline, was read.
    mutable std::map<std::string, int> reads;
    mutable std::map<std::string, int> outlines;

private:
    std::vector<std::string> m_modules;
    std::map<std::string, Categories> m_categories;
};
