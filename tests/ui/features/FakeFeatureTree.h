// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureController.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// A camera's features in memory, which counts what it is asked for.
class FakeFeatureTree : public FeatureController {
public:
    using Key = std::pair<std::string, std::string>;

    explicit FakeFeatureTree(std::vector<std::string> modules)
        : FeatureController(nullptr, "Cam"), m_modules(std::move(modules)) {}

    /// A feature that can be read and written.
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

    std::vector<std::string> getModuleNames() const override { return m_modules; }
    std::map<std::string, std::vector<std::string>>
    getFeaturesByCategory(const std::string& module) const override {
        const auto found = m_categories.find(module);
        return found == m_categories.end() ? decltype(found->second)() : found->second;
    }
    FeatureInfo getFeatureInfo(const std::string& module, const std::string& name) const override {
        ++reads[name];
        return features.at({module, name});
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
        if (refuses)
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

    std::map<Key, FeatureInfo> features;
    bool refuses = false;
    std::function<void()> onWrite;
    std::vector<std::pair<std::string, FeatureValue>> written;
    std::vector<std::pair<std::string, double>> commands;
    /// How often each description, and each outline, was read.
    mutable std::map<std::string, int> reads;
    mutable std::map<std::string, int> outlines;

private:
    std::vector<std::string> m_modules;
    std::map<std::string, std::map<std::string, std::vector<std::string>>> m_categories;
};
