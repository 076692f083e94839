// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/MemoryFeature.h"

#include "orvcpp/core/ArrayOutput.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orv {

using OrvCPP::EnumEntry;

MemoryFeature::MemoryFeature(std::shared_ptr<FeatureModule> module, FeatureNode& node)
    : m_module(std::move(module)), m_node(node) {}

OrvErrorType MemoryFeature::GetValue(std::uint8_t* buffer, std::uint32_t& size,
                                     std::uint32_t& sizeFilled) const {
    return m_module->read([&]() -> OrvErrorType {
        Bytes value;
        if (const OrvErrorType error = m_node.get(value); error != OrvErrorSuccess)
            return error;
        const OrvErrorType error = writeArray(value, buffer, size);
        sizeFilled = buffer && error == OrvErrorSuccess ? size : 0;
        return error;
    });
}

OrvErrorType MemoryFeature::GetValue(bool& value) const {
    return m_module->read([&] { return m_node.get(value); });
}

OrvErrorType MemoryFeature::GetValue(char* buffer, std::uint32_t& length) const {
    return m_module->read([&]() -> OrvErrorType {
        std::string value;
        if (m_node.type() == OrvFeatureDataEnum) {
            std::int64_t number = 0;
            if (const OrvErrorType error = m_node.get(number); error != OrvErrorSuccess)
                return error;
            const EnumEntry* entry = m_node.findEntry(number);
            value = entry ? entry->name : std::string();
        } else if (const OrvErrorType error = m_node.get(value); error != OrvErrorSuccess) {
            return error;
        }
        return writeArray(value, buffer, length);
    });
}

OrvErrorType MemoryFeature::GetValue(double& value) const {
    return m_module->read([&] { return m_node.get(value); });
}

OrvErrorType MemoryFeature::GetValue(std::int64_t& value) const {
    return m_module->read([&] { return m_node.get(value); });
}

OrvErrorType MemoryFeature::GetValues(const char** values, std::uint32_t& count) const {
    return m_module->read([&]() -> OrvErrorType {
        if (m_node.type() != OrvFeatureDataEnum)
            return OrvErrorWrongType;
        std::vector<const char*> names;
        for (const EnumEntry& entry : m_node.entries())
            names.push_back(entry.name.c_str());
        return writeArray(names, values, count);
    });
}

OrvErrorType MemoryFeature::GetValues(std::int64_t* values, std::uint32_t& count) const {
    return m_module->read([&]() -> OrvErrorType {
        if (m_node.type() != OrvFeatureDataEnum)
            return OrvErrorWrongType;
        std::vector<std::int64_t> numbers;
        for (const EnumEntry& entry : m_node.entries())
            numbers.push_back(entry.value);
        return writeArray(numbers, values, count);
    });
}

OrvErrorType MemoryFeature::GetEntry(EnumEntry& entry, const char* name) const {
    return m_module->read([&]() -> OrvErrorType {
        if (m_node.type() != OrvFeatureDataEnum)
            return OrvErrorWrongType;
        if (!name)
            return OrvErrorBadParameter;
        const EnumEntry* found = m_node.findEntry(std::string(name));
        if (!found)
            return OrvErrorInvalidValue;
        entry = *found;
        return OrvErrorSuccess;
    });
}

OrvErrorType MemoryFeature::GetEntries(EnumEntry* entries, std::uint32_t& count) const {
    return m_module->read([&]() -> OrvErrorType {
        if (m_node.type() != OrvFeatureDataEnum)
            return OrvErrorWrongType;
        return writeArray(m_node.entries(), entries, count);
    });
}

OrvErrorType MemoryFeature::GetRange(std::int64_t& minimum, std::int64_t& maximum) const {
    return m_module->read([&]() -> OrvErrorType {
        const auto limits = m_node.integerLimits();
        if (!limits)
            return OrvErrorWrongType;
        minimum = limits->minimum;
        maximum = limits->maximum;
        return OrvErrorSuccess;
    });
}

OrvErrorType MemoryFeature::GetRange(double& minimum, double& maximum) const {
    return m_module->read([&]() -> OrvErrorType {
        const auto limits = m_node.floatingLimits();
        if (!limits)
            return OrvErrorWrongType;
        minimum = limits->minimum;
        maximum = limits->maximum;
        return OrvErrorSuccess;
    });
}

OrvErrorType MemoryFeature::setValue(const Value& value) {
    return m_module->write(m_node, [&] { return m_node.set(value); });
}

OrvErrorType MemoryFeature::SetValue(const std::uint8_t* data, std::uint32_t size) {
    if (!data)
        return m_module->read([] { return OrvErrorBadParameter; });
    return setValue(Bytes(data, std::next(data, size)));
}

OrvErrorType MemoryFeature::SetValue(const char* value) {
    return m_module->write(m_node, [&]() -> OrvErrorType {
        if (!value)
            return OrvErrorBadParameter;
        if (m_node.type() != OrvFeatureDataEnum)
            return m_node.set(std::string(value));
        if (!m_node.isWritable())
            return OrvErrorInvalidAccess;
        const EnumEntry* entry = m_node.findEntry(std::string(value));
        return entry ? m_node.set(entry->value) : OrvErrorInvalidValue;
    });
}

OrvErrorType MemoryFeature::SetValue(bool value) {
    return setValue(value);
}

OrvErrorType MemoryFeature::SetValue(double value) {
    return setValue(value);
}

OrvErrorType MemoryFeature::SetValue(std::int64_t value) {
    return setValue(value);
}

OrvErrorType MemoryFeature::HasIncrement(bool& hasIncrement) const {
    return m_module->read([&]() -> OrvErrorType {
        const auto floating = m_node.floatingLimits();
        if (!floating && !m_node.integerLimits())
            return OrvErrorWrongType;
        hasIncrement = !floating || floating->increment > 0;
        return OrvErrorSuccess;
    });
}

OrvErrorType MemoryFeature::GetIncrement(double& increment) const {
    return m_module->read([&]() -> OrvErrorType {
        const auto limits = m_node.floatingLimits();
        if (!limits)
            return OrvErrorWrongType;
        if (!(limits->increment > 0))
            return OrvErrorNotAvailable;
        increment = limits->increment;
        return OrvErrorSuccess;
    });
}

OrvErrorType MemoryFeature::GetIncrement(std::int64_t& increment) const {
    return m_module->read([&]() -> OrvErrorType {
        const auto limits = m_node.integerLimits();
        if (!limits)
            return OrvErrorWrongType;
        increment = limits->increment;
        return OrvErrorSuccess;
    });
}

template <typename Given>
OrvErrorType MemoryFeature::availability(const Given& given, bool& available) const {
    return m_module->read([&]() -> OrvErrorType {
        if (m_node.type() != OrvFeatureDataEnum)
            return OrvErrorWrongType;
        const EnumEntry* entry = m_node.findEntry(given);
        if (!entry)
            return OrvErrorInvalidValue;
        available = m_node.isAvailable(*entry);
        return OrvErrorSuccess;
    });
}

OrvErrorType MemoryFeature::IsValueAvailable(std::int64_t value, bool& available) const {
    return availability(value, available);
}

OrvErrorType MemoryFeature::IsValueAvailable(const char* value, bool& available) const {
    if (!value)
        return m_module->read([] { return OrvErrorBadParameter; });
    return availability(std::string(value), available);
}

OrvErrorType MemoryFeature::RunCommand() {
    return m_module->write(m_node, [&] { return m_node.run(Clock::now()); });
}

OrvErrorType MemoryFeature::IsCommandDone(bool& done) const {
    return m_module->read([&] { return m_node.isDone(done); });
}

OrvErrorType MemoryFeature::text(const std::string& text, char* buffer,
                                 std::uint32_t& length) const {
    return m_module->read([&] { return writeArray(text, buffer, length); });
}

template <typename T, typename Get>
OrvErrorType MemoryFeature::describe(T& result, const Get& get) const {
    return m_module->read([&] {
        result = get();
        return OrvErrorSuccess;
    });
}

OrvErrorType MemoryFeature::GetName(char* buffer, std::uint32_t& length) const {
    return text(m_node.name(), buffer, length);
}

OrvErrorType MemoryFeature::GetDisplayName(char* buffer, std::uint32_t& length) const {
    return text(m_node.displayName(), buffer, length);
}

OrvErrorType MemoryFeature::GetDataType(OrvFeatureDataType& type) const {
    return describe(type, [&] { return m_node.type(); });
}

OrvErrorType MemoryFeature::GetFlags(OrvFeatureFlagsType& flags) const {
    return describe(flags, [&] { return m_node.flags(); });
}

OrvErrorType MemoryFeature::GetCategory(char* buffer, std::uint32_t& length) const {
    return text(m_node.category(), buffer, length);
}

OrvErrorType MemoryFeature::GetUnit(char* buffer, std::uint32_t& length) const {
    return text(m_node.unit(), buffer, length);
}

OrvErrorType MemoryFeature::GetRepresentation(char* buffer, std::uint32_t& length) const {
    return text(m_node.representation(), buffer, length);
}

OrvErrorType MemoryFeature::GetVisibility(OrvFeatureVisibilityType& visibility) const {
    return describe(visibility, [&] { return m_node.visibility(); });
}

OrvErrorType MemoryFeature::GetToolTip(char* buffer, std::uint32_t& length) const {
    return text(m_node.description(), buffer, length);
}

OrvErrorType MemoryFeature::GetDescription(char* buffer, std::uint32_t& length) const {
    return text(m_node.description(), buffer, length);
}

OrvErrorType MemoryFeature::GetSelectedFeatures(std::shared_ptr<OrvCPP::Feature>* features,
                                                std::uint32_t& count) const {
    return m_module->getFeatures(m_node.selected(), features, count);
}

OrvErrorType MemoryFeature::GetValidValueSet(std::int64_t* values, std::uint32_t& count) const {
    return m_module->read([&]() -> OrvErrorType {
        if (m_node.validValueSet().empty())
            return OrvErrorValidValueSetNotPresent;
        return writeArray(m_node.validValueSet(), values, count);
    });
}

OrvErrorType MemoryFeature::IsReadable(bool& readable) const {
    return describe(readable, [&] { return m_node.isReadable(); });
}

OrvErrorType MemoryFeature::IsWritable(bool& writable) const {
    return m_module->isWritable(m_node, writable);
}

OrvErrorType
MemoryFeature::RegisterObserver(const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) {
    return m_module->registerObserver(m_node, observer);
}

OrvErrorType
MemoryFeature::UnregisterObserver(const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) {
    return m_module->unregisterObserver(m_node, observer);
}

} // namespace orv
