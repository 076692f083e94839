// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/Clock.h"
#include "orvcpp/core/EnumEntries.h"

#include "OrvCPP/EnumEntry.h"
#include "OrvCPP/OrvTypes.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace orv {

using Bytes = std::vector<std::uint8_t>;
/// Value of a feature; the number of the entry for an enumeration.
using Value = std::variant<std::int64_t, double, bool, std::string, Bytes>;

struct IntegerLimits {
    std::int64_t minimum = 0;
    std::int64_t maximum = 0;
    std::int64_t increment = 1;
};

struct FloatLimits {
    double minimum = 0;
    double maximum = 0;
    /// 0: every value between the limits.
    double increment = 0;
};

/// One feature of a module: its description, and how it is read and written. Not thread-safe:
/// guarded by its module.
///
/// It is described by chained calls while its module is built:
/// set.integer("Width").unit("px").bind(model.width).limits(...);
class FeatureNode {
public:
    FeatureNode(OrvFeatureDataType type, std::string name, std::string category);

    FeatureNode(const FeatureNode&) = delete;
    FeatureNode& operator=(const FeatureNode&) = delete;

    FeatureNode& about(std::string description);
    FeatureNode& unit(std::string unit);
    /// GenICam representation; "Linear" for numbers unless given.
    FeatureNode& shownAs(std::string representation);
    FeatureNode& expert();
    FeatureNode& guru();
    FeatureNode& invisible();

    /// Not one of the settings that are saved and restored, as a readable and writable value is.
    FeatureNode& notStreamable();
    FeatureNode& readOnly();
    FeatureNode& writeOnly();
    FeatureNode& writableIf(std::function<bool()> condition);

    FeatureNode& limits(std::int64_t minimum, std::int64_t maximum, std::int64_t increment = 1);
    FeatureNode& limits(std::function<IntegerLimits()> limits);
    FeatureNode& floatLimits(double minimum, double maximum, double increment = 0);
    FeatureNode& floatLimits(std::function<FloatLimits()> limits);
    FeatureNode& validValues(std::vector<std::int64_t> values);
    FeatureNode& maximumLength(std::size_t length);
    FeatureNode& entry(const std::string& name, std::int64_t value, bool available = true);
    /// Names of the features whose values depend on this one's.
    FeatureNode& selects(std::vector<std::string> features);
    /// Keeps a value of its own for each entry of \p selector, which must outlive the node.
    FeatureNode& perEntryOf(const FeatureNode& selector);

    /// Initial value.
    FeatureNode& value(Value value);
    /// Initial entry, by name.
    FeatureNode& current(const std::string& entryName);
    /// Value computed from others; makes the feature read-only.
    FeatureNode& computed(std::function<Value()> get);
    /// Reads and writes \p variable, which must outlive the node.
    template <typename T> FeatureNode& bind(T& variable) {
        m_get = [&variable](Value& value) {
            value = variable;
            return OrvErrorType{OrvErrorSuccess};
        };
        m_put = [&variable](const Value& value) {
            variable = std::get<T>(value);
            return OrvErrorType{OrvErrorSuccess};
        };
        m_dependent = true;
        return *this;
    }
    /// Overrides reading; to be called after bind() or writtenBy().
    FeatureNode& readAs(std::function<Value()> get);
    /// Reads by \p get, which may answer an error.
    FeatureNode& readBy(std::function<OrvErrorType(Value&)> get);
    /// Writes by \p put, which may answer an error.
    FeatureNode& writtenBy(std::function<OrvErrorType(const Value&)> put);
    /// Runs after the value was written.
    FeatureNode& onWrite(std::function<void()> effect);
    /// Effect of a command, \p duration after it was run.
    FeatureNode& action(std::function<void()> effect, std::chrono::milliseconds duration = {});
    /// Effect of a command, at once; may answer an error.
    FeatureNode& runBy(std::function<OrvErrorType()> work);
    /// Answers \p code when it is read, written, or both.
    FeatureNode& failing(OrvErrorType code, bool onGet, bool onSet);
    /// A command that never completes.
    FeatureNode& stuck();

    const std::string& name() const { return m_name; }
    const std::string& displayName() const { return m_displayName; }
    const std::string& category() const { return m_category; }
    const std::string& unit() const { return m_unit; }
    const std::string& representation() const { return m_representation; }
    const std::string& description() const { return m_description; }
    OrvFeatureDataType type() const { return m_type; }
    OrvFeatureVisibilityType visibility() const { return m_visibility; }
    OrvFeatureFlagsType flags() const;
    /// Whether value, limits or access can change without a write to this feature.
    bool isDependent() const { return m_dependent; }
    const std::vector<std::string>& selected() const { return m_selects; }
    const std::vector<std::int64_t>& validValueSet() const { return m_validValues; }

    bool isReadable() const { return m_readable && m_type != OrvFeatureDataCommand; }
    bool isWritable() const { return m_writable && (!m_writableIf || m_writableIf()); }
    std::optional<IntegerLimits> integerLimits() const;
    std::optional<FloatLimits> floatingLimits() const;

    const EnumEntries& entries() const { return m_entries; }
    /// By name or by value; null when there is none.
    template <typename Key> const OrvCPP::EnumEntry* findEntry(const Key& key) const {
        return orv::findEntry(m_entries, key);
    }
    bool isAvailable(const OrvCPP::EnumEntry& entry) const;

    /// Reads the value; an error when the feature cannot be read or is of another type.
    template <typename T> OrvErrorType get(T& value) const {
        if (const OrvErrorType error = mayGet(); error != OrvErrorSuccess)
            return error;
        Value found;
        if (const OrvErrorType error = read(found); error != OrvErrorSuccess)
            return error;
        const T* typed = std::get_if<T>(&found);
        if (!typed)
            return OrvErrorWrongType;
        value = *typed;
        return OrvErrorSuccess;
    }
    /// Checks type, access, limits and increment, then writes the value.
    OrvErrorType set(const Value& value);

    OrvErrorType run(Clock::time_point now);
    OrvErrorType isDone(bool& done) const;
    /// Completes a command that is due; true if it did.
    bool settle(Clock::time_point now);

private:
    OrvErrorType mayGet() const;
    OrvErrorType checkType(const Value& value) const;
    OrvErrorType checkLimits(const Value& value) const;
    OrvErrorType read(Value& value) const;
    OrvErrorType store(const Value& value);
    std::int64_t slot() const;

    OrvFeatureDataType m_type;
    std::string m_name;
    std::string m_displayName;
    std::string m_category;
    std::string m_description;
    std::string m_unit;
    std::string m_representation;
    OrvFeatureVisibilityType m_visibility = OrvFeatureVisibilityBeginner;

    bool m_readable = true;
    bool m_writable = true;
    bool m_streamable = true;
    bool m_dependent = false;
    std::function<bool()> m_writableIf;
    std::function<IntegerLimits()> m_integerLimits;
    std::function<FloatLimits()> m_floatLimits;
    std::vector<std::int64_t> m_validValues;
    std::size_t m_maximumLength = 64;
    EnumEntries m_entries;
    std::vector<std::string> m_unavailable;
    std::vector<std::string> m_selects;

    const FeatureNode* m_selector = nullptr;
    Value m_initial;
    std::map<std::int64_t, Value> m_stored;
    std::function<OrvErrorType(Value&)> m_get;
    std::function<OrvErrorType(const Value&)> m_put;
    std::function<void()> m_effect;

    std::chrono::milliseconds m_duration{};
    std::optional<Clock::time_point> m_runningSince;
    bool m_stuck = false;
    OrvErrorType m_getError = OrvErrorSuccess;
    OrvErrorType m_setError = OrvErrorSuccess;
};

} // namespace orv
