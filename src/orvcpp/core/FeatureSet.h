// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/FeatureNode.h"

#include <memory>
#include <string>
#include <vector>

namespace orv {

/// The features of a module, in the order in which they were added. Not thread-safe.
class FeatureSet {
public:
    /// Category of the features that are added from here on, for example "/ImageFormatControl".
    void category(std::string path) { m_category = std::move(path); }

    FeatureNode& integer(const std::string& name) { return add(OrvFeatureDataInt, name); }
    FeatureNode& floating(const std::string& name) { return add(OrvFeatureDataFloat, name); }
    FeatureNode& enumeration(const std::string& name) { return add(OrvFeatureDataEnum, name); }
    FeatureNode& boolean(const std::string& name) { return add(OrvFeatureDataBool, name); }
    FeatureNode& command(const std::string& name) { return add(OrvFeatureDataCommand, name); }
    FeatureNode& raw(const std::string& name) { return add(OrvFeatureDataRaw, name); }
    FeatureNode& string(const std::string& name) { return add(OrvFeatureDataString, name); }
    /// A text that never changes.
    FeatureNode& fixedText(const std::string& name, std::string text) {
        return string(name).value(std::move(text)).readOnly();
    }
    /// A number that never changes.
    FeatureNode& fixedNumber(const std::string& name, std::int64_t number) {
        return integer(name).value(number).shownAs("PureNumber").readOnly();
    }

    const std::vector<std::unique_ptr<FeatureNode>>& nodes() const { return m_nodes; }
    /// Empty when there is no such feature.
    FeatureNode* find(const std::string& name) const {
        for (const auto& node : m_nodes) {
            if (node->name() == name)
                return node.get();
        }
        return nullptr;
    }

private:
    FeatureNode& add(OrvFeatureDataType type, const std::string& name) {
        m_nodes.push_back(std::make_unique<FeatureNode>(type, name, m_category));
        return *m_nodes.back();
    }

    std::string m_category;
    std::vector<std::unique_ptr<FeatureNode>> m_nodes;
};

} // namespace orv
