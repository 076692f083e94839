// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/GenicamFeature.h"

#include "orvcpp/aravis/device/FeatureAccess.h"
#include "orvcpp/aravis/device/NodeAccess.h"
#include "orvcpp/core/ArrayOutput.h"

#include <algorithm>
#include <iterator>
#include <type_traits>

namespace orv::aravis {

using OrvCPP::EnumEntry;

GenicamFeature::GenicamFeature(std::shared_ptr<FeatureAccess> access,
                               std::shared_ptr<const FeatureDescription> description)
    : m_access(std::move(access)), m_description(std::move(description)) {}

/// Runs \p read on the device's thread. It writes to memory of its own, as it may run after the
/// call has timed out.
template <typename T, typename Read> OrvErrorType GenicamFeature::ask(T& result, Read read) const {
    if (const OrvErrorType error = m_access->enter(false); error != OrvErrorSuccess)
        return error;
    const auto answer = std::make_shared<T>();
    const OrvErrorType error =
        m_access->device().call([description = m_description, answer, read](ArvDevice*) {
            return read(*description, *answer);
        });
    if (error == OrvErrorSuccess)
        result = std::move(*answer);
    return error;
}

template <typename Change> OrvErrorType GenicamFeature::change(Change apply) {
    if (const OrvErrorType error = m_access->enter(true); error != OrvErrorSuccess)
        return error;
    const OrvErrorType error = m_access->device().call(
        [description = m_description, apply](ArvDevice*) { return apply(*description); });
    return error == OrvErrorSuccess ? m_access->noteWrite(m_description->name) : error;
}

template <typename T> OrvErrorType GenicamFeature::describe(T& result, const T& known) const {
    const OrvErrorType error = m_access->enter(false);
    if (error == OrvErrorSuccess)
        result = known;
    return error;
}

template <typename List, typename Element>
OrvErrorType GenicamFeature::describeList(const List& known, Element* array,
                                          std::uint32_t& count) const {
    const OrvErrorType error = m_access->enter(false);
    return error != OrvErrorSuccess ? error : writeArray(known, array, count);
}

OrvErrorType GenicamFeature::GetValue(std::uint8_t* buffer, std::uint32_t& size,
                                      std::uint32_t& sizeFilled) const {
    node::Bytes value;
    OrvErrorType error = ask(value, [](const FeatureDescription& feature, node::Bytes& bytes) {
        return node::get(feature, bytes);
    });
    if (error == OrvErrorSuccess)
        error = writeArray(value, buffer, size);
    sizeFilled = buffer && error == OrvErrorSuccess ? size : 0;
    return error;
}

OrvErrorType GenicamFeature::GetValue(bool& value) const {
    return ask(value, [](const FeatureDescription& feature, bool& read) {
        return node::get(feature, read);
    });
}

OrvErrorType GenicamFeature::GetValue(char* buffer, std::uint32_t& length) const {
    std::string value;
    const OrvErrorType error = ask(value, [](const FeatureDescription& feature, std::string& read) {
        return node::get(feature, read);
    });
    return error != OrvErrorSuccess ? error : writeArray(value, buffer, length);
}

OrvErrorType GenicamFeature::GetValue(double& value) const {
    return ask(value, [](const FeatureDescription& feature, double& read) {
        return node::get(feature, read);
    });
}

OrvErrorType GenicamFeature::GetValue(std::int64_t& value) const {
    return ask(value, [](const FeatureDescription& feature, std::int64_t& read) {
        return node::get(feature, read);
    });
}

OrvErrorType GenicamFeature::GetValues(const char** values, std::uint32_t& count) const {
    if (m_description->type != OrvFeatureDataEnum)
        return OrvErrorWrongType;
    std::vector<const char*> names;
    for (const EnumEntry& entry : m_description->entries)
        names.push_back(entry.name.c_str());
    return describeList(names, values, count);
}

OrvErrorType GenicamFeature::GetValues(std::int64_t* values, std::uint32_t& count) const {
    if (m_description->type != OrvFeatureDataEnum)
        return OrvErrorWrongType;
    std::vector<std::int64_t> numbers;
    for (const EnumEntry& entry : m_description->entries)
        numbers.push_back(entry.value);
    return describeList(numbers, values, count);
}

OrvErrorType GenicamFeature::GetEntry(EnumEntry& entry, const char* name) const {
    if (m_description->type != OrvFeatureDataEnum)
        return OrvErrorWrongType;
    if (!name)
        return OrvErrorBadParameter;
    const EnumEntry* const found = m_description->findEntry(std::string(name));
    return found ? describe(entry, *found) : OrvErrorInvalidValue;
}

OrvErrorType GenicamFeature::GetEntries(EnumEntry* entries, std::uint32_t& count) const {
    if (m_description->type != OrvFeatureDataEnum)
        return OrvErrorWrongType;
    return describeList(m_description->entries, entries, count);
}

OrvErrorType GenicamFeature::GetRange(std::int64_t& minimum, std::int64_t& maximum) const {
    node::Limits<std::int64_t> limits;
    const OrvErrorType error =
        ask(limits, [](const FeatureDescription& feature, node::Limits<std::int64_t>& read) {
            return node::limits(feature, read);
        });
    if (error == OrvErrorSuccess) {
        minimum = limits.minimum;
        maximum = limits.maximum;
    }
    return error;
}

OrvErrorType GenicamFeature::GetRange(double& minimum, double& maximum) const {
    node::Limits<double> limits;
    const OrvErrorType error =
        ask(limits, [](const FeatureDescription& feature, node::Limits<double>& read) {
            return node::limits(feature, read);
        });
    if (error == OrvErrorSuccess) {
        minimum = limits.minimum;
        maximum = limits.maximum;
    }
    return error;
}

OrvErrorType GenicamFeature::SetValue(const std::uint8_t* data, std::uint32_t size) {
    if (!data)
        return OrvErrorBadParameter;
    return change([value = node::Bytes(data, std::next(data, size))](
                      const FeatureDescription& feature) { return node::set(feature, value); });
}

OrvErrorType GenicamFeature::SetValue(const char* value) {
    if (!value)
        return OrvErrorBadParameter;
    return change([text = std::string(value)](const FeatureDescription& feature) {
        return node::set(feature, text);
    });
}

OrvErrorType GenicamFeature::SetValue(bool value) {
    return change([value](const FeatureDescription& feature) { return node::set(feature, value); });
}

OrvErrorType GenicamFeature::SetValue(double value) {
    return change([value](const FeatureDescription& feature) { return node::set(feature, value); });
}

OrvErrorType GenicamFeature::SetValue(std::int64_t value) {
    return change([value](const FeatureDescription& feature) { return node::set(feature, value); });
}

OrvErrorType GenicamFeature::HasIncrement(bool& hasIncrement) const {
    if (m_description->type == OrvFeatureDataInt)
        return describe(hasIncrement, true);
    double increment = 0;
    const OrvErrorType error = GetIncrement(increment);
    if (error == OrvErrorSuccess || error == OrvErrorNotAvailable)
        hasIncrement = error == OrvErrorSuccess;
    return error == OrvErrorNotAvailable ? OrvErrorSuccess : error;
}

OrvErrorType GenicamFeature::GetIncrement(double& increment) const {
    return ask(increment, [](const FeatureDescription& feature, double& read) -> OrvErrorType {
        node::Limits<double> limits;
        const OrvErrorType error = node::limits(feature, limits);
        read = limits.increment;
        if (error != OrvErrorSuccess)
            return error;
        return read > 0 ? OrvErrorSuccess : OrvErrorNotAvailable;
    });
}

OrvErrorType GenicamFeature::GetIncrement(std::int64_t& increment) const {
    return ask(increment, [](const FeatureDescription& feature, std::int64_t& read) {
        node::Limits<std::int64_t> limits;
        const OrvErrorType error = node::limits(feature, limits);
        read = limits.increment;
        return error;
    });
}

OrvErrorType GenicamFeature::availability(const EnumEntry* entry, bool& available) const {
    if (m_description->type != OrvFeatureDataEnum)
        return OrvErrorWrongType;
    if (!entry)
        return OrvErrorInvalidValue;
    return ask(available, [name = entry->name](const FeatureDescription& feature, bool& is) {
        return node::isAvailable(feature, name, is);
    });
}

OrvErrorType GenicamFeature::IsValueAvailable(std::int64_t value, bool& available) const {
    return availability(m_description->findEntry(value), available);
}

OrvErrorType GenicamFeature::IsValueAvailable(const char* value, bool& available) const {
    if (!value)
        return OrvErrorBadParameter;
    return availability(m_description->findEntry(std::string(value)), available);
}

OrvErrorType GenicamFeature::RunCommand() {
    return change([](const FeatureDescription& feature) { return node::run(feature); });
}

OrvErrorType GenicamFeature::IsCommandDone(bool& done) const {
    return ask(done, [](const FeatureDescription& feature, bool& is) {
        return node::isDone(feature, is);
    });
}

OrvErrorType GenicamFeature::GetName(char* buffer, std::uint32_t& length) const {
    return describeList(m_description->name, buffer, length);
}

OrvErrorType GenicamFeature::GetDisplayName(char* buffer, std::uint32_t& length) const {
    return describeList(m_description->displayName, buffer, length);
}

OrvErrorType GenicamFeature::GetDataType(OrvFeatureDataType& type) const {
    return describe(type, m_description->type);
}

OrvErrorType GenicamFeature::GetFlags(OrvFeatureFlagsType& flags) const {
    // Any feature may change by itself: the description does not tell.
    unsigned set = OrvFeatureFlagsVolatile;
    set |= m_description->isReadable ? OrvFeatureFlagsRead : OrvFeatureFlagsNone;
    set |= m_description->isWritable ? OrvFeatureFlagsWrite : OrvFeatureFlagsNone;
    set |= m_description->isStreamable ? OrvFeatureFlagsStreamable : OrvFeatureFlagsNone;
    return describe(flags, static_cast<OrvFeatureFlagsType>(set));
}

OrvErrorType GenicamFeature::GetCategory(char* buffer, std::uint32_t& length) const {
    return describeList(m_description->category, buffer, length);
}

OrvErrorType GenicamFeature::GetUnit(char* buffer, std::uint32_t& length) const {
    return describeList(m_description->unit, buffer, length);
}

OrvErrorType GenicamFeature::GetRepresentation(char* buffer, std::uint32_t& length) const {
    return describeList(m_description->representation, buffer, length);
}

OrvErrorType GenicamFeature::GetVisibility(OrvFeatureVisibilityType& visibility) const {
    return describe(visibility, m_description->visibility);
}

OrvErrorType GenicamFeature::GetToolTip(char* buffer, std::uint32_t& length) const {
    return describeList(m_description->toolTip, buffer, length);
}

OrvErrorType GenicamFeature::GetDescription(char* buffer, std::uint32_t& length) const {
    return describeList(m_description->description, buffer, length);
}

OrvErrorType GenicamFeature::GetSelectedFeatures(std::shared_ptr<OrvCPP::Feature>* features,
                                                 std::uint32_t& count) const {
    return m_access->getFeatures(m_description->selected, features, count);
}

OrvErrorType GenicamFeature::GetValidValueSet(std::int64_t* /*values*/,
                                              std::uint32_t& /*count*/) const {
    const OrvErrorType error = m_access->enter(false);
    return error != OrvErrorSuccess ? error : OrvErrorValidValueSetNotPresent;
}

OrvErrorType GenicamFeature::IsReadable(bool& readable) const {
    return ask(readable, [](const FeatureDescription& feature, bool& is) -> OrvErrorType {
        is = node::admitsReading(feature) == OrvErrorSuccess;
        return OrvErrorSuccess;
    });
}

OrvErrorType GenicamFeature::IsWritable(bool& writable) const {
    if (m_access->device().admits(true) == OrvErrorInvalidAccess)
        return describe(writable, false);
    return ask(writable, [](const FeatureDescription& feature, bool& is) -> OrvErrorType {
        is = node::admitsWriting(feature) == OrvErrorSuccess;
        return OrvErrorSuccess;
    });
}

OrvErrorType
GenicamFeature::RegisterObserver(const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) {
    return m_access->registerObserver(m_description->name, observer);
}

OrvErrorType
GenicamFeature::UnregisterObserver(const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) {
    return m_access->unregisterObserver(m_description->name, observer);
}

} // namespace orv::aravis
