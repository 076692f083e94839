// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/FeatureDescription.h"

#include "orvcpp/aravis/LibraryError.h"

#include <algorithm>
#include <initializer_list>

namespace orv::aravis {

using OrvCPP::EnumEntry;

namespace {

/// More links to a value than any camera has; a description may be circular.
constexpr std::size_t maximumDepth = 16;
/// Features that a camera must have, but may leave out of its categories.
constexpr const char* knownByNameOnly[] = {"PayloadSize", "TLParamsLocked", "AcquisitionStart",
                                           "AcquisitionStop", "GevSCPSPacketSize"};

/// The library answers nothing where the description has no text.
std::string text(const char* given) {
    return given ? given : "";
}

std::string textOr(const char* given, const std::string& otherwise) {
    return given && *given ? given : otherwise;
}

OrvFeatureVisibilityType visibilityOf(ArvGcFeatureNode* node) {
    switch (arv_gc_feature_node_get_visibility(node)) {
    case ARV_GC_VISIBILITY_EXPERT:
        return OrvFeatureVisibilityExpert;
    case ARV_GC_VISIBILITY_GURU:
        return OrvFeatureVisibilityGuru;
    case ARV_GC_VISIBILITY_INVISIBLE:
        return OrvFeatureVisibilityInvisible;
    case ARV_GC_VISIBILITY_BEGINNER:
    case ARV_GC_VISIBILITY_UNDEFINED:
        break;
    }
    return OrvFeatureVisibilityBeginner;
}

std::string representationName(ArvGcRepresentation representation) {
    switch (representation) {
    case ARV_GC_REPRESENTATION_LINEAR:
        return "Linear";
    case ARV_GC_REPRESENTATION_LOGARITHMIC:
        return "Logarithmic";
    case ARV_GC_REPRESENTATION_BOOLEAN:
        return "Boolean";
    case ARV_GC_REPRESENTATION_HEX_NUMBER:
        return "HexNumber";
    case ARV_GC_REPRESENTATION_IPV4_ADDRESS:
        return "IPV4Address";
    case ARV_GC_REPRESENTATION_MAC_ADDRESS:
        return "MACAddress";
    case ARV_GC_REPRESENTATION_PURE_NUMBER:
    case ARV_GC_REPRESENTATION_UNDEFINED:
        break;
    }
    return "PureNumber";
}

/// Special types first: an enumeration is also an integer, and each may be a register.
OrvFeatureDataType typeOf(ArvGcFeatureNode* node) {
    if (ARV_IS_GC_COMMAND(node))
        return OrvFeatureDataCommand;
    if (ARV_IS_GC_ENUMERATION(node))
        return OrvFeatureDataEnum;
    if (ARV_IS_GC_BOOLEAN(node))
        return OrvFeatureDataBool;
    if (ARV_IS_GC_STRING(node))
        return OrvFeatureDataString;
    if (ARV_IS_GC_FLOAT(node))
        return OrvFeatureDataFloat;
    if (ARV_IS_GC_INTEGER(node))
        return OrvFeatureDataInt;
    if (ARV_IS_GC_REGISTER(node))
        return OrvFeatureDataRaw;
    return OrvFeatureDataUnknown;
}

void describeNumber(FeatureDescription& feature) {
    if (feature.type == OrvFeatureDataInt) {
        feature.unit = text(arv_gc_integer_get_unit(ARV_GC_INTEGER(feature.node)));
        feature.representation =
            representationName(arv_gc_integer_get_representation(ARV_GC_INTEGER(feature.node)));
    } else if (feature.type == OrvFeatureDataFloat) {
        feature.unit = text(arv_gc_float_get_unit(ARV_GC_FLOAT(feature.node)));
        feature.representation =
            representationName(arv_gc_float_get_representation(ARV_GC_FLOAT(feature.node)));
    }
}

EnumEntry describeEntry(ArvGcFeatureNode* node) {
    EnumEntry entry;
    entry.name = text(arv_gc_feature_node_get_name(node));
    entry.displayName = textOr(arv_gc_feature_node_get_display_name(node), entry.name);
    entry.description = text(arv_gc_feature_node_get_description(node));
    entry.toolTip = text(arv_gc_feature_node_get_tooltip(node));
    entry.visibility = visibilityOf(node);
    LibraryError failure;
    entry.value = arv_gc_enum_entry_get_value(ARV_GC_ENUM_ENTRY(node), failure.out());
    return entry;
}

void describeEntries(FeatureDescription& feature) {
    const GSList* entries = arv_gc_enumeration_get_entries(ARV_GC_ENUMERATION(feature.node));
    for (; entries; entries = entries->next) {
        auto* const node = ARV_GC_FEATURE_NODE(entries->data);
        feature.entries.push_back(describeEntry(node));
        feature.entryNodes.emplace(feature.entries.back().name, node);
    }
    // The library lists them from the last to the first.
    std::reverse(feature.entries.begin(), feature.entries.end());
}

void describeSelected(FeatureDescription& feature) {
    if (!ARV_IS_GC_SELECTOR(feature.node))
        return;
    const GSList* selected = arv_gc_selector_get_selected_features(ARV_GC_SELECTOR(feature.node));
    for (; selected; selected = selected->next)
        feature.selected.push_back(
            text(arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(selected->data))));
}

bool allowsReading(ArvGcFeatureNode* node) {
    return arv_gc_feature_node_get_actual_access_mode(node) != ARV_GC_ACCESS_MODE_WO;
}

bool allowsWriting(ArvGcFeatureNode* node) {
    return arv_gc_feature_node_get_actual_access_mode(node) != ARV_GC_ACCESS_MODE_RO;
}

/// The node's first property of one of \p types; null when there is none.
ArvGcPropertyNode* propertyOf(ArvGcFeatureNode* node,
                              std::initializer_list<ArvGcPropertyNodeType> types) {
    for (ArvDomNode* child = arv_dom_node_get_first_child(ARV_DOM_NODE(node)); child;
         child = arv_dom_node_get_next_sibling(child)) {
        if (!ARV_IS_GC_PROPERTY_NODE(child))
            continue;
        auto* const property = ARV_GC_PROPERTY_NODE(child);
        if (std::count(types.begin(), types.end(), arv_gc_property_node_get_node_type(property)))
            return property;
    }
    return nullptr;
}

bool isStreamable(ArvGcFeatureNode* node) {
    ArvGcPropertyNode* const property = propertyOf(node, {ARV_GC_PROPERTY_NODE_TYPE_STREAMABLE});
    return property && arv_gc_property_node_get_streamable(property, ARV_GC_STREAMABLE_NO) ==
                           ARV_GC_STREAMABLE_YES;
}

/// The node that holds the value of \p node; null when that is \p node itself.
ArvGcFeatureNode* valueNodeOf(ArvGcFeatureNode* node) {
    ArvGcPropertyNode* const property = propertyOf(node, {ARV_GC_PROPERTY_NODE_TYPE_P_VALUE});
    ArvGcNode* const linked = property ? arv_gc_property_node_get_linked_node(property) : nullptr;
    return linked && ARV_IS_GC_FEATURE_NODE(linked) ? ARV_GC_FEATURE_NODE(linked) : nullptr;
}

std::vector<ArvGcFeatureNode*> wayToValue(ArvGcFeatureNode* node) {
    std::vector<ArvGcFeatureNode*> way;
    for (; node && way.size() < maximumDepth; node = valueNodeOf(node))
        way.push_back(node);
    return way;
}

bool isImplemented(ArvGcFeatureNode* node) {
    const std::vector<ArvGcFeatureNode*> way = wayToValue(node);
    // The library would follow a circular description forever.
    if (way.size() == maximumDepth)
        return false;
    return std::all_of(way.begin(), way.end(), [](ArvGcFeatureNode* part) {
        LibraryError failure;
        return arv_gc_feature_node_is_implemented(part, failure.out()) != FALSE;
    });
}

/// A command can be polled when the node that it writes is readable.
void describeCommand(FeatureDescription& feature) {
    feature.commandValue = propertyOf(feature.node, {ARV_GC_PROPERTY_NODE_TYPE_COMMAND_VALUE,
                                                     ARV_GC_PROPERTY_NODE_TYPE_P_COMMAND_VALUE});
    ArvGcFeatureNode* const written = valueNodeOf(feature.node);
    if (written && ARV_IS_GC_INTEGER(written) && allowsReading(written))
        feature.polled = ARV_GC_INTEGER(written);
}

/// Copies: the library rebuilds its list at each request.
std::vector<std::string> featuresOf(ArvGcFeatureNode* category) {
    std::vector<std::string> names;
    const GSList* listed = arv_gc_category_get_features(ARV_GC_CATEGORY(category));
    for (; listed; listed = listed->next)
        names.emplace_back(static_cast<const char*>(listed->data));
    return names;
}

std::shared_ptr<FeatureDescription> describe(ArvGcFeatureNode* node, const std::string& category) {
    auto feature = std::make_shared<FeatureDescription>();
    feature->node = node;
    feature->wayToValue = wayToValue(node);
    feature->type = typeOf(node);
    feature->visibility = visibilityOf(node);
    feature->isReadable = feature->type != OrvFeatureDataCommand && allowsReading(node);
    feature->isWritable = feature->type == OrvFeatureDataCommand || allowsWriting(node);
    feature->isStreamable = isStreamable(node);
    feature->name = text(arv_gc_feature_node_get_name(node));
    feature->displayName = textOr(arv_gc_feature_node_get_display_name(node), feature->name);
    feature->description = text(arv_gc_feature_node_get_description(node));
    feature->toolTip = text(arv_gc_feature_node_get_tooltip(node));
    feature->category = category;
    describeNumber(*feature);
    describeSelected(*feature);
    if (feature->type == OrvFeatureDataEnum)
        describeEntries(*feature);
    if (feature->type == OrvFeatureDataCommand)
        describeCommand(*feature);
    return feature;
}

} // namespace

FeatureCatalogue::FeatureCatalogue(ArvGc* description) {
    std::set<ArvGcFeatureNode*> visited;
    ArvGcNode* const root = arv_gc_get_node(description, "Root");
    if (root && ARV_IS_GC_CATEGORY(root))
        addCategory(description, ARV_GC_FEATURE_NODE(root), {}, visited);
    for (const char* const name : knownByNameOnly) {
        ArvGcFeatureNode* const node = newNode(description, name);
        if (node && typeOf(node) != OrvFeatureDataUnknown)
            m_byName.emplace(name, describe(node, {}));
    }
}

/// An implemented node that no earlier category has; null otherwise.
ArvGcFeatureNode* FeatureCatalogue::newNode(ArvGc* description, const char* name) const {
    ArvGcNode* const node = arv_gc_get_node(description, name);
    if (!node || !ARV_IS_GC_FEATURE_NODE(node) || m_byName.count(name) > 0)
        return nullptr;
    auto* const feature = ARV_GC_FEATURE_NODE(node);
    return isImplemented(feature) ? feature : nullptr;
}

void FeatureCatalogue::addCategory(ArvGc* description, ArvGcFeatureNode* category,
                                   const std::string& path, std::set<ArvGcFeatureNode*>& visited) {
    if (!visited.insert(category).second)
        return;
    for (const std::string& name : featuresOf(category)) {
        ArvGcFeatureNode* const node = newNode(description, name.c_str());
        if (!node)
            continue;
        if (ARV_IS_GC_CATEGORY(node)) {
            addCategory(description, node, path + '/' + name, visited);
        } else if (typeOf(node) != OrvFeatureDataUnknown) {
            m_features.push_back(describe(node, path));
            m_byName.emplace(m_features.back()->name, m_features.back());
        }
    }
}

std::shared_ptr<const FeatureDescription> FeatureCatalogue::find(const std::string& name) const {
    const auto found = m_byName.find(name);
    return found == m_byName.end() ? nullptr : found->second;
}

} // namespace orv::aravis
