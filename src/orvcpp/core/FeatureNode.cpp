// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/FeatureNode.h"

#include "orvcpp/core/FloatStep.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <utility>

namespace orv {

namespace {

bool isUpper(char c) {
    return std::isupper(static_cast<unsigned char>(c)) != 0;
}

/// "AcquisitionFrameRate" becomes "Acquisition Frame Rate", "GVSPPacketSize" "GVSP Packet Size".
std::string spaced(const std::string& name) {
    std::string result;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool afterLower = i > 0 && isUpper(name[i]) && !isUpper(name[i - 1]);
        const bool lastOfCapitals = i > 0 && i + 1 < name.size() && isUpper(name[i]) &&
                                    isUpper(name[i - 1]) && !isUpper(name[i + 1]);
        if (afterLower || lastOfCapitals)
            result += ' ';
        result += name[i];
    }
    return result;
}

Value emptyValue(OrvFeatureDataType type) {
    switch (type) {
    case OrvFeatureDataFloat:
        return 0.0;
    case OrvFeatureDataBool:
        return false;
    case OrvFeatureDataString:
        return std::string();
    case OrvFeatureDataRaw:
        return Bytes();
    default:
        return std::int64_t{0};
    }
}

bool isNumber(OrvFeatureDataType type) {
    return type == OrvFeatureDataInt || type == OrvFeatureDataFloat;
}

} // namespace

FeatureNode::FeatureNode(OrvFeatureDataType type, std::string name, std::string category)
    : m_type(type), m_name(std::move(name)), m_displayName(spaced(m_name)),
      m_category(std::move(category)), m_description(m_displayName + "."),
      m_representation(isNumber(type) ? "Linear" : ""), m_readable(type != OrvFeatureDataCommand),
      m_initial(emptyValue(type)) {}

FeatureNode& FeatureNode::about(std::string description) {
    m_description = std::move(description);
    return *this;
}

FeatureNode& FeatureNode::unit(std::string unit) {
    m_unit = std::move(unit);
    return *this;
}

FeatureNode& FeatureNode::shownAs(std::string representation) {
    m_representation = std::move(representation);
    return *this;
}

FeatureNode& FeatureNode::expert() {
    m_visibility = OrvFeatureVisibilityExpert;
    return *this;
}

FeatureNode& FeatureNode::guru() {
    m_visibility = OrvFeatureVisibilityGuru;
    return *this;
}

FeatureNode& FeatureNode::invisible() {
    m_visibility = OrvFeatureVisibilityInvisible;
    return *this;
}

FeatureNode& FeatureNode::notStreamable() {
    m_streamable = false;
    return *this;
}

FeatureNode& FeatureNode::readOnly() {
    m_writable = false;
    return *this;
}

FeatureNode& FeatureNode::writeOnly() {
    m_readable = false;
    return *this;
}

FeatureNode& FeatureNode::writableIf(std::function<bool()> condition) {
    m_writableIf = std::move(condition);
    m_dependent = true;
    return *this;
}

FeatureNode& FeatureNode::limits(std::int64_t minimum, std::int64_t maximum,
                                 std::int64_t increment) {
    const IntegerLimits fixed{minimum, maximum, increment};
    m_integerLimits = [fixed] {
        return fixed;
    };
    return *this;
}

FeatureNode& FeatureNode::limits(std::function<IntegerLimits()> limits) {
    m_integerLimits = std::move(limits);
    m_dependent = true;
    return *this;
}

FeatureNode& FeatureNode::floatLimits(double minimum, double maximum, double increment) {
    const FloatLimits fixed{minimum, maximum, increment};
    m_floatLimits = [fixed] {
        return fixed;
    };
    return *this;
}

FeatureNode& FeatureNode::floatLimits(std::function<FloatLimits()> limits) {
    m_floatLimits = std::move(limits);
    m_dependent = true;
    return *this;
}

FeatureNode& FeatureNode::validValues(std::vector<std::int64_t> values) {
    limits(values.front(), values.back());
    m_validValues = std::move(values);
    return *this;
}

FeatureNode& FeatureNode::maximumLength(std::size_t length) {
    m_maximumLength = length;
    return *this;
}

FeatureNode& FeatureNode::entry(const std::string& name, std::int64_t value, bool available) {
    OrvCPP::EnumEntry added;
    added.name = name;
    added.displayName = spaced(name);
    added.description = m_displayName + ": " + added.displayName + ".";
    added.toolTip = added.displayName;
    added.visibility = m_visibility;
    added.value = value;
    if (m_entries.empty())
        m_initial = value;
    m_entries.push_back(std::move(added));
    if (!available)
        m_unavailable.push_back(name);
    return *this;
}

FeatureNode& FeatureNode::selects(std::vector<std::string> features) {
    m_selects = std::move(features);
    return *this;
}

FeatureNode& FeatureNode::perEntryOf(const FeatureNode& selector) {
    m_selector = &selector;
    m_dependent = true;
    return *this;
}

FeatureNode& FeatureNode::value(Value value) {
    m_initial = std::move(value);
    return *this;
}

FeatureNode& FeatureNode::current(const std::string& entryName) {
    return value(findEntry(entryName)->value);
}

FeatureNode& FeatureNode::computed(std::function<Value()> get) {
    m_dependent = true;
    return readAs(std::move(get)).readOnly();
}

FeatureNode& FeatureNode::readAs(std::function<Value()> get) {
    return readBy([get = std::move(get)](Value& value) -> OrvErrorType {
        value = get();
        return OrvErrorSuccess;
    });
}

FeatureNode& FeatureNode::readBy(std::function<OrvErrorType(Value&)> get) {
    m_get = std::move(get);
    return *this;
}

FeatureNode& FeatureNode::writtenBy(std::function<OrvErrorType(const Value&)> put) {
    m_put = std::move(put);
    m_dependent = true;
    return *this;
}

FeatureNode& FeatureNode::onWrite(std::function<void()> effect) {
    m_effect = std::move(effect);
    return *this;
}

FeatureNode& FeatureNode::action(std::function<void()> effect, std::chrono::milliseconds duration) {
    m_effect = std::move(effect);
    m_duration = duration;
    return *this;
}

FeatureNode& FeatureNode::runBy(std::function<OrvErrorType()> work) {
    m_put = [work = std::move(work)](const Value&) {
        return work();
    };
    return *this;
}

FeatureNode& FeatureNode::failing(OrvErrorType code, bool onGet, bool onSet) {
    m_getError = onGet ? code : OrvErrorSuccess;
    m_setError = onSet ? code : OrvErrorSuccess;
    return *this;
}

FeatureNode& FeatureNode::stuck() {
    m_stuck = true;
    return *this;
}

OrvFeatureFlagsType FeatureNode::flags() const {
    unsigned flags = OrvFeatureFlagsNone;
    flags |= isReadable() ? OrvFeatureFlagsRead : 0U;
    flags |= isWritable() ? OrvFeatureFlagsWrite : 0U;
    flags |= m_get && !m_put ? OrvFeatureFlagsVolatile : 0U;
    flags |= m_dependent && m_put ? OrvFeatureFlagsModifyWrite : 0U;
    const bool isSetting = m_type != OrvFeatureDataCommand && m_readable && m_writable;
    flags |= isSetting && m_streamable ? OrvFeatureFlagsStreamable : 0U;
    return static_cast<OrvFeatureFlagsType>(flags);
}

std::optional<IntegerLimits> FeatureNode::integerLimits() const {
    if (m_type != OrvFeatureDataInt)
        return {};
    return m_integerLimits ? m_integerLimits() : IntegerLimits{0, 0xFFFFFFFF, 1};
}

std::optional<FloatLimits> FeatureNode::floatingLimits() const {
    if (m_type != OrvFeatureDataFloat)
        return {};
    return m_floatLimits ? m_floatLimits() : FloatLimits{0, 1e9, 0};
}

bool FeatureNode::isAvailable(const OrvCPP::EnumEntry& entry) const {
    return std::find(m_unavailable.begin(), m_unavailable.end(), entry.name) == m_unavailable.end();
}

OrvErrorType FeatureNode::mayGet() const {
    if (m_type == OrvFeatureDataCommand)
        return OrvErrorWrongType;
    if (!m_readable)
        return OrvErrorInvalidAccess;
    return m_getError;
}

std::int64_t FeatureNode::slot() const {
    Value entry = std::int64_t{0};
    if (m_selector)
        m_selector->read(entry);
    return std::get<std::int64_t>(entry);
}

OrvErrorType FeatureNode::read(Value& value) const {
    if (m_get)
        return m_get(value);
    const auto stored = m_stored.find(slot());
    value = stored == m_stored.end() ? m_initial : stored->second;
    return OrvErrorSuccess;
}

OrvErrorType FeatureNode::store(const Value& value) {
    if (m_put)
        return m_put(value);
    m_stored[slot()] = value;
    return OrvErrorSuccess;
}

OrvErrorType FeatureNode::checkType(const Value& value) const {
    return m_type != OrvFeatureDataCommand && value.index() == m_initial.index()
               ? OrvErrorSuccess
               : OrvErrorWrongType;
}

OrvErrorType FeatureNode::checkLimits(const Value& value) const {
    bool valid = true;
    if (const auto integer = integerLimits()) {
        const auto number = std::get<std::int64_t>(value);
        valid = number >= integer->minimum && number <= integer->maximum &&
                (number - integer->minimum) % integer->increment == 0;
        if (!m_validValues.empty())
            valid = std::count(m_validValues.begin(), m_validValues.end(), number) > 0;
    } else if (const auto floating = floatingLimits()) {
        const double number = std::get<double>(value);
        valid = number >= floating->minimum && number <= floating->maximum &&
                isOnStep(number, floating->minimum, floating->increment);
    } else if (m_type == OrvFeatureDataEnum) {
        const OrvCPP::EnumEntry* found = findEntry(std::get<std::int64_t>(value));
        valid = found && isAvailable(*found);
    } else if (m_type == OrvFeatureDataString) {
        valid = std::get<std::string>(value).size() <= m_maximumLength;
    } else if (m_type == OrvFeatureDataRaw) {
        valid = std::get<Bytes>(value).size() == std::get<Bytes>(m_initial).size();
    }
    return valid ? OrvErrorSuccess : OrvErrorInvalidValue;
}

OrvErrorType FeatureNode::set(const Value& value) {
    if (const OrvErrorType error = checkType(value); error != OrvErrorSuccess)
        return error;
    if (!isWritable())
        return OrvErrorInvalidAccess;
    if (const OrvErrorType error = checkLimits(value); error != OrvErrorSuccess)
        return error;
    if (m_setError != OrvErrorSuccess)
        return m_setError;
    if (const OrvErrorType error = store(value); error != OrvErrorSuccess)
        return error;
    if (m_effect)
        m_effect();
    return OrvErrorSuccess;
}

OrvErrorType FeatureNode::run(Clock::time_point now) {
    if (m_type != OrvFeatureDataCommand)
        return OrvErrorWrongType;
    if (!isWritable())
        return OrvErrorInvalidAccess;
    if (m_setError != OrvErrorSuccess)
        return m_setError;
    if (const OrvErrorType error = m_put ? m_put(m_initial) : OrvErrorSuccess;
        error != OrvErrorSuccess)
        return error;
    m_runningSince = now;
    settle(now);
    return OrvErrorSuccess;
}

OrvErrorType FeatureNode::isDone(bool& done) const {
    if (m_type != OrvFeatureDataCommand)
        return OrvErrorWrongType;
    if (m_getError != OrvErrorSuccess)
        return m_getError;
    done = !m_runningSince;
    return OrvErrorSuccess;
}

bool FeatureNode::settle(Clock::time_point now) {
    if (!m_runningSince || m_stuck || now - *m_runningSince < m_duration)
        return false;
    m_runningSince.reset();
    if (m_effect)
        m_effect();
    return true;
}

} // namespace orv
