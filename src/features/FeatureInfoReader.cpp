// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureInfoReader.h"

#include "logging/Log.h"

#include <cstdint>

namespace {

constexpr const char* noDisplayName = ": Cannot get feature display name for '";
constexpr const char* noWritability = ": Cannot get feature writability for '";

template <typename T>
OrvErrorType readValueAs(const OrvFeatureWrapper& feature, FeatureValue& value) {
    T read{};
    const OrvErrorType error = feature.GetValue(read);
    if (error == OrvErrorSuccess)
        value = std::move(read);
    return error;
}

const char* valueMessage(OrvFeatureDataType type) {
    switch (type) {
    case OrvFeatureDataInt:
        return ": Cannot get feature value (int) for '";
    case OrvFeatureDataFloat:
        return ": Cannot get feature value (double) for '";
    case OrvFeatureDataBool:
        return ": Cannot get feature value (bool) for '";
    default:
        return ": Cannot get feature value (string) for '";
    }
}

} // namespace

OrvErrorType KnownFeature::readValue(OrvFeatureDataType type, FeatureValue& value) const {
    switch (type) {
    case OrvFeatureDataInt:
        return readValueAs<std::int64_t>(*feature, value);
    case OrvFeatureDataFloat:
        return readValueAs<double>(*feature, value);
    case OrvFeatureDataEnum:
    case OrvFeatureDataString:
        return readValueAs<std::string>(*feature, value);
    case OrvFeatureDataBool:
        return readValueAs<bool>(*feature, value);
    default:
        return OrvErrorSuccess;
    }
}

FeatureInfo FeatureInfoReader::read() const {
    FeatureInfo info;
    const OrvErrorType error =
        m_known.readOnce(m_known.name, &OrvFeatureWrapper::GetName, info.name);
    if (error != OrvErrorSuccess)
        logDebug(m_prefix + ": Cannot get feature name", error);
    readAttributes(info);
    check(m_known.readValue(info.dataType, info.value), valueMessage(info.dataType));
    switch (info.dataType) {
    case OrvFeatureDataInt:
        readLimits<std::int64_t>(info);
        break;
    case OrvFeatureDataFloat:
        readLimits<double>(info);
        break;
    case OrvFeatureDataEnum:
        readEntries(info);
        break;
    default:
        break;
    }
    return info;
}

FeatureInfo FeatureInfoReader::readOutline() const {
    FeatureInfo info;
    readStatic(info.displayName, m_known.displayName, &OrvFeatureWrapper::GetDisplayName,
               noDisplayName);
    readFlag(info.writable, &OrvFeatureWrapper::IsWritable, noWritability);
    return info;
}

bool FeatureInfoReader::check(OrvErrorType error, const char* text) const {
    if (error != OrvErrorSuccess)
        logDebug(m_prefix + text + m_name + "'", error);
    return error == OrvErrorSuccess;
}

template <typename T>
void FeatureInfoReader::readStatic(T& field, std::optional<T>& known, Getter<T> get,
                                   const char* text) const {
    check(m_known.readOnce(known, get, field), text);
}

void FeatureInfoReader::readFlag(bool& field, Getter<bool> get, const char* text) const {
    bool read = false;
    if (check((m_feature.*get)(read), text))
        field = read;
}

void FeatureInfoReader::readAttributes(FeatureInfo& info) const {
    using Feature = OrvFeatureWrapper;
    KnownFeature& known = m_known;
    readStatic(info.category, known.category, &Feature::GetCategory,
               ": Cannot get feature category for '");
    readStatic(info.displayName, known.displayName, &Feature::GetDisplayName, noDisplayName);
    readStatic(info.description, known.description, &Feature::GetDescription,
               ": Cannot get feature description for '");
    readStatic(info.representation, known.representation, &Feature::GetRepresentation,
               ": Cannot get feature representation for '");
    readStatic(info.toolTip, known.toolTip, &Feature::GetToolTip,
               ": Cannot get feature tooltip for '");
    readStatic(info.unit, known.unit, &Feature::GetUnit, ": Cannot get feature unit for '");
    readFlag(info.readable, &Feature::IsReadable, ": Cannot get feature readability for '");
    readFlag(info.writable, &Feature::IsWritable, noWritability);
    readStatic(info.visibility, known.visibility, &Feature::GetVisibility,
               ": Cannot get feature visibility for '");
    check(known.readOnce(known.dataType, &Feature::GetDataType, info.dataType),
          ": Cannot get feature data type for '");
}

template <typename Number> void FeatureInfoReader::readLimits(FeatureInfo& info) const {
    Number minimum{};
    Number maximum{};
    if (check(m_feature.GetRange(minimum, maximum), ": Cannot get feature range for '")) {
        info.minimum = minimum;
        info.maximum = maximum;
    }
    Number increment{};
    if (check(m_feature.GetIncrement(increment), ": Cannot get feature increment for '"))
        info.increment = increment;
}

void FeatureInfoReader::readEntries(FeatureInfo& info) const {
    readStatic<std::vector<std::string>>(info.values, m_known.values, &OrvFeatureWrapper::GetValues,
                                         ": Cannot get feature values list for '");
    for (const std::string& entry : info.values) {
        bool available = false;
        if (check(m_feature.IsValueAvailable(entry.c_str(), available),
                  ": Cannot determine if feature is available for '") &&
            available)
            info.availableValues.emplace_back(entry);
    }
}
