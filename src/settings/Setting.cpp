// SPDX-License-Identifier: BSD-3-Clause
#include "settings/Setting.h"

#include "features/RepeatedCall.h"
#include "sdk/ErrorText.h"
#include "sdk/OrvFeatureWrapper.h"
#include "settings/SavedSettings.h"

#include <QByteArray>

#include <algorithm>
#include <cmath>
#include <utility>

namespace settings {

namespace {

constexpr std::int64_t mostSelectorValues = 4096;
/// Above the relative rounding error of a 32-bit float, 6e-8.
constexpr double singlePrecision = 1e-6;

/// The result of the last of several attempts.
template <typename Call> OrvErrorType repeated(const Call& call) {
    OrvErrorType error = OrvErrorSuccess;
    succeedsRepeatedly([&] { return (error = call()) == OrvErrorSuccess; });
    return error;
}

template <typename T> OrvErrorType readAs(const OrvFeatureWrapper& feature, FeatureValue& value) {
    T read{};
    const OrvErrorType error = feature.GetValue(read);
    if (error == OrvErrorSuccess)
        value = std::move(read);
    return error;
}

OrvErrorType readBytes(const OrvFeatureWrapper& feature, FeatureValue& value) {
    std::vector<std::uint8_t> bytes;
    const OrvErrorType error = feature.GetValue(bytes);
    if (error == OrvErrorSuccess)
        value =
            QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()))
                .toHex()
                .toStdString();
    return error;
}

OrvErrorType writeBytes(OrvFeatureWrapper& feature, const std::string& digits) {
    const QByteArray bytes = QByteArray::fromHex(QByteArray::fromStdString(digits));
    return feature.SetValue(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                            static_cast<std::uint32_t>(bytes.size()));
}

template <typename Number>
std::string rangeRefusal(const OrvFeatureWrapper& feature, Number value) {
    Number minimum{};
    Number maximum{};
    const OrvErrorType error = repeated([&] { return feature.GetRange(minimum, maximum); });
    if (error != OrvErrorSuccess || (value >= minimum && value <= maximum))
        return {};
    return "it takes " + exactText(minimum) + " to " + exactText(maximum) + " now";
}

} // namespace

Setting::Setting(std::shared_ptr<OrvFeatureWrapper> feature) : m_feature(std::move(feature)) {}

OrvErrorType Setting::describe() {
    OrvFeatureFlagsType flags = OrvFeatureFlagsNone;
    std::vector<std::shared_ptr<OrvFeatureWrapper>> selected;
    OrvErrorType error = repeated([&] { return m_feature->GetName(m_name); });
    if (error == OrvErrorSuccess)
        error = repeated([&] { return m_feature->GetDataType(m_type); });
    if (error == OrvErrorSuccess)
        error = repeated([&] { return m_feature->GetFlags(flags); });
    if (error == OrvErrorSuccess)
        error = repeated([&] { return m_feature->GetSelectedFeatures(selected); });
    m_isStreamable = (flags & OrvFeatureFlagsStreamable) != 0;
    for (const auto& feature : selected) {
        std::string name;
        if (error == OrvErrorSuccess)
            error = repeated([&] { return feature->GetName(name); });
        m_selected.push_back(name);
    }
    return error;
}

OrvErrorType Setting::isReadable(bool& readable) const {
    return repeated([&] { return m_feature->IsReadable(readable); });
}

OrvErrorType Setting::isWritable(bool& writable) const {
    return repeated([&] { return m_feature->IsWritable(writable); });
}

OrvErrorType Setting::read(FeatureValue& value) const {
    return repeated([&]() -> OrvErrorType {
        switch (m_type) {
        case OrvFeatureDataInt:
            return readAs<std::int64_t>(*m_feature, value);
        case OrvFeatureDataFloat:
            return readAs<double>(*m_feature, value);
        case OrvFeatureDataBool:
            return readAs<bool>(*m_feature, value);
        case OrvFeatureDataEnum:
        case OrvFeatureDataString:
            return readAs<std::string>(*m_feature, value);
        case OrvFeatureDataRaw:
            return readBytes(*m_feature, value);
        default:
            return OrvErrorWrongType;
        }
    });
}

OrvErrorType Setting::write(const FeatureValue& value) const {
    if (m_type == OrvFeatureDataRaw)
        return repeated([&] { return writeBytes(*m_feature, std::get<std::string>(value)); });
    return repeated([&] {
        return std::visit(
            [this](const auto& given) -> OrvErrorType {
                if constexpr (std::is_same_v<decltype(given), const std::string&>)
                    return m_feature->SetValue(given.c_str());
                else
                    return m_feature->SetValue(given);
            },
            value);
    });
}

std::string Setting::refusal(const FeatureValue& value) const {
    bool writable = false;
    if (const OrvErrorType error = isWritable(writable); error != OrvErrorSuccess)
        return errorText(error);
    if (!writable)
        return "it cannot be written now";
    if (const auto* const number = std::get_if<std::int64_t>(&value))
        return rangeRefusal(*m_feature, *number);
    if (const auto* const number = std::get_if<double>(&value))
        return rangeRefusal(*m_feature, *number);
    bool available = true;
    if (m_type == OrvFeatureDataEnum)
        repeated([&] {
            return m_feature->IsValueAvailable(std::get<std::string>(value).c_str(), available);
        });
    return available ? std::string() : "the entry is not available now";
}

bool Setting::isSame(const FeatureValue& saved, const FeatureValue& present) const {
    const auto* const first = std::get_if<double>(&saved);
    const auto* const second = std::get_if<double>(&present);
    if (!first || !second)
        return saved == present;
    double step = 0;
    if (m_feature->GetIncrement(step) != OrvErrorSuccess)
        step = 0;
    const double rounding = std::max(std::abs(*first), std::abs(*second)) * singlePrecision;
    return std::abs(*first - *second) <= std::max(step / 2, rounding);
}

OrvErrorType Setting::values(std::vector<FeatureValue>& values) const {
    values.clear();
    switch (m_type) {
    case OrvFeatureDataEnum:
        return entries(values);
    case OrvFeatureDataInt:
        return integers(values);
    case OrvFeatureDataBool:
        values = {false, true};
        return OrvErrorSuccess;
    default:
        return OrvErrorWrongType;
    }
}

OrvErrorType Setting::entries(std::vector<FeatureValue>& values) const {
    std::vector<std::string> names;
    if (const OrvErrorType error = repeated([&] { return m_feature->GetValues(names); });
        error != OrvErrorSuccess)
        return error;
    for (const std::string& name : names) {
        bool available = false;
        const OrvErrorType error =
            repeated([&] { return m_feature->IsValueAvailable(name.c_str(), available); });
        if (error != OrvErrorSuccess)
            return error;
        if (available)
            values.emplace_back(name);
    }
    return OrvErrorSuccess;
}

OrvErrorType Setting::integers(std::vector<FeatureValue>& values) const {
    std::int64_t minimum = 0;
    std::int64_t maximum = 0;
    std::int64_t increment = 1;
    OrvErrorType error = repeated([&] { return m_feature->GetRange(minimum, maximum); });
    if (error == OrvErrorSuccess)
        error = repeated([&] { return m_feature->GetIncrement(increment); });
    if (error != OrvErrorSuccess)
        return error;
    const auto span = static_cast<double>(maximum) - static_cast<double>(minimum);
    increment = std::max<std::int64_t>(increment, 1);
    if (span / static_cast<double>(increment) >= mostSelectorValues)
        return OrvErrorResources;
    for (std::int64_t value = minimum; value <= maximum; value += increment)
        values.emplace_back(value);
    return OrvErrorSuccess;
}

} // namespace settings
