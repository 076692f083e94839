// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/EnumEntries.h"

#include "OrvCPP/OrvTypes.h"

#include <arv.h>

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace orv::aravis {

/// The constant properties of a camera's feature: read once, when the camera is opened.
struct FeatureDescription {
    /// Belongs to the opened device, and is used on the device's thread only.
    ArvGcFeatureNode* node = nullptr;
    /// The node, the node that holds its value, and so on. The feature is usable only while all of
    /// them are.
    std::vector<ArvGcFeatureNode*> wayToValue;
    OrvFeatureDataType type = OrvFeatureDataUnknown;
    OrvFeatureVisibilityType visibility = OrvFeatureVisibilityBeginner;
    bool isReadable = false;
    bool isWritable = false;
    /// Whether the description says that the value belongs to the settings that are saved.
    bool isStreamable = false;
    std::string name;
    std::string displayName;
    std::string description;
    std::string toolTip;
    std::string unit;
    std::string representation;
    /// Path from the root, for example "/ImageFormatControl".
    std::string category;
    /// In the order of the camera's description.
    EnumEntries entries;
    std::map<std::string, ArvGcFeatureNode*> entryNodes;
    /// Names of the features that this one selects.
    std::vector<std::string> selected;
    /// Read to find out whether a command is done; null when it cannot be polled.
    ArvGcInteger* polled = nullptr;
    /// Value of \p polled while the command runs.
    ArvGcPropertyNode* commandValue = nullptr;

    /// By name or by value; null when there is none.
    template <typename Key> const OrvCPP::EnumEntry* findEntry(const Key& key) const {
        return orv::findEntry(entries, key);
    }
};

/// The features of an opened camera, in the order of its description.
class FeatureCatalogue {
public:
    /// Walks the categories from the root. On the device's thread only: whether a feature exists
    /// may depend on a register.
    explicit FeatureCatalogue(ArvGc* description);

    const std::vector<std::shared_ptr<const FeatureDescription>>& features() const {
        return m_features;
    }
    /// Also a feature that is in no category. Empty when there is no such feature.
    std::shared_ptr<const FeatureDescription> find(const std::string& name) const;

private:
    ArvGcFeatureNode* newNode(ArvGc* description, const char* name) const;
    /// Visits each category once, as a description may nest one in itself.
    void addCategory(ArvGc* description, ArvGcFeatureNode* category, const std::string& path,
                     std::set<ArvGcFeatureNode*>& visited);

    std::vector<std::shared_ptr<const FeatureDescription>> m_features;
    std::map<std::string, std::shared_ptr<const FeatureDescription>> m_byName;
};

} // namespace orv::aravis
