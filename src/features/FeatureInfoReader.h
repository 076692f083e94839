// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"
#include "features/FeatureInfo.h"
#include "sdk/OrvFeatureWrapper.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// A feature of the camera, and what has been read of it that never changes while it is open.
struct KnownFeature {
    template <typename T> using Getter = OrvErrorType (OrvFeatureWrapper::*)(T&) const;

    /// Reads what never changes: from memory once the SDK has answered.
    template <typename T>
    OrvErrorType readOnce(std::optional<T>& known, Getter<T> get, T& field) const {
        if (!known) {
            T read{};
            const OrvErrorType error = ((*feature).*get)(read);
            if (error != OrvErrorSuccess)
                return error;
            known = std::move(read);
        }
        field = *known;
        return OrvErrorSuccess;
    }
    /// Reads the value in the alternative of the feature's data type. Of a feature without a value,
    /// \p value stays as it is.
    OrvErrorType readValue(OrvFeatureDataType type, FeatureValue& value) const;

    std::shared_ptr<OrvFeatureWrapper> feature;
    std::optional<std::string> name;
    std::optional<std::string> category;
    std::optional<std::string> displayName;
    std::optional<std::string> description;
    std::optional<std::string> representation;
    std::optional<std::string> toolTip;
    std::optional<std::string> unit;
    std::optional<OrvFeatureVisibilityType> visibility;
    std::optional<OrvFeatureDataType> dataType;
    std::optional<std::vector<std::string>> values;
};

/// Reads the description of one feature, attribute by attribute. What cannot be read is logged at
/// debug level and keeps its default. Bound to the GUI thread.
class FeatureInfoReader {
public:
    /// \p name and \p prefix are for messages. All arguments must outlive the reader.
    FeatureInfoReader(KnownFeature& known, const std::string& name, const std::string& prefix)
        : m_known(known), m_feature(*known.feature), m_name(name), m_prefix(prefix) {}

    FeatureInfo read() const;
    /// Only the display name, and whether the feature is writable.
    FeatureInfo readOutline() const;

private:
    template <typename T> using Getter = KnownFeature::Getter<T>;

    bool check(OrvErrorType error, const char* text) const;
    template <typename T>
    void readStatic(T& field, std::optional<T>& known, Getter<T> get, const char* text) const;
    void readFlag(bool& field, Getter<bool> get, const char* text) const;
    void readAttributes(FeatureInfo& info) const;
    template <typename Number> void readLimits(FeatureInfo& info) const;
    void readEntries(FeatureInfo& info) const;

    KnownFeature& m_known;
    const OrvFeatureWrapper& m_feature;
    const std::string& m_name;
    const std::string& m_prefix;
};
