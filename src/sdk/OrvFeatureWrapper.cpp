// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvFeatureWrapper.h"

#include "sdk/SdkQuery.h"

OrvFeatureWrapper::OrvFeatureWrapper(std::shared_ptr<OrvCPP::Feature> feature)
    : m_feature(std::move(feature)) {}

OrvFeatureWrapper::~OrvFeatureWrapper() = default;

std::shared_ptr<OrvCPP::Feature>& OrvFeatureWrapper::GetHandle() {
    return m_feature;
}

OrvErrorType OrvFeatureWrapper::GetValue(std::vector<std::uint8_t>& value) const {
    std::uint32_t sizeFilled = 0;
    return GetValue(value, sizeFilled);
}

OrvErrorType OrvFeatureWrapper::GetValue(std::vector<std::uint8_t>& value,
                                         std::uint32_t& sizeFilled) const {
    sizeFilled = 0;
    std::uint32_t filled = 0;
    const OrvErrorType error = SdkQuery::elements(
        m_feature.get(), value,
        [&filled](const OrvCPP::Feature& feature, std::uint8_t* buffer, std::uint32_t& size) {
            return feature.GetValue(buffer, size, filled);
        });
    if (filled < value.size())
        value.resize(filled);
    sizeFilled = static_cast<std::uint32_t>(value.size());
    return error;
}

OrvErrorType OrvFeatureWrapper::GetValue(bool& value) const {
    return m_feature ? m_feature->GetValue(value) : noObject;
}

OrvErrorType OrvFeatureWrapper::GetValue(std::string& value) const {
    return SdkQuery::text(m_feature.get(), value,
                          [](const OrvCPP::Feature& feature, char* buffer, std::uint32_t& length) {
                              return feature.GetValue(buffer, length);
                          });
}

OrvErrorType OrvFeatureWrapper::GetValue(double& value) const {
    return m_feature ? m_feature->GetValue(value) : noObject;
}

OrvErrorType OrvFeatureWrapper::GetValue(std::int64_t& value) const {
    return m_feature ? m_feature->GetValue(value) : noObject;
}

OrvErrorType OrvFeatureWrapper::GetValues(std::vector<std::string>& values) const {
    values.clear();
    std::vector<const char*> texts;
    const OrvErrorType error =
        SdkQuery::elements(m_feature.get(), texts,
                           [](const OrvCPP::Feature& feature, const char** found,
                              std::uint32_t& count) { return feature.GetValues(found, count); });
    return SdkQuery::guarded([&] {
        std::vector<std::string> copies;
        copies.reserve(texts.size());
        for (const char* text : texts)
            copies.emplace_back(text == nullptr ? "" : text);
        values = std::move(copies);
        return error;
    });
}

OrvErrorType OrvFeatureWrapper::GetValues(std::vector<std::int64_t>& values) const {
    return SdkQuery::elements(m_feature.get(), values,
                              [](const OrvCPP::Feature& feature, std::int64_t* found,
                                 std::uint32_t& count) { return feature.GetValues(found, count); });
}

OrvErrorType OrvFeatureWrapper::GetEntry(OrvCPP::EnumEntry& entry, const char* name) const {
    return m_feature ? m_feature->GetEntry(entry, name) : noObject;
}

OrvErrorType OrvFeatureWrapper::GetEntries(std::vector<OrvCPP::EnumEntry>& entries) const {
    return SdkQuery::elements(m_feature.get(), entries, &OrvCPP::Feature::GetEntries);
}

OrvErrorType OrvFeatureWrapper::GetRange(std::int64_t& minimum, std::int64_t& maximum) const {
    return m_feature ? m_feature->GetRange(minimum, maximum) : noObject;
}

OrvErrorType OrvFeatureWrapper::GetRange(double& minimum, double& maximum) const {
    return m_feature ? m_feature->GetRange(minimum, maximum) : noObject;
}

OrvErrorType OrvFeatureWrapper::SetValue(const std::uint8_t* data, std::uint32_t size) {
    return m_feature ? m_feature->SetValue(data, size) : noObject;
}

void OrvFeatureWrapper::Reserved15() {}

OrvErrorType OrvFeatureWrapper::SetValue(const char* value) {
    return m_feature ? m_feature->SetValue(value) : noObject;
}

OrvErrorType OrvFeatureWrapper::SetValue(bool value) {
    return m_feature ? m_feature->SetValue(value) : noObject;
}

OrvErrorType OrvFeatureWrapper::SetValue(double value) {
    return m_feature ? m_feature->SetValue(value) : noObject;
}

OrvErrorType OrvFeatureWrapper::SetValue(std::int64_t value) {
    return m_feature ? m_feature->SetValue(value) : noObject;
}

OrvErrorType OrvFeatureWrapper::HasIncrement(bool& hasIncrement) const {
    return m_feature ? m_feature->HasIncrement(hasIncrement) : noObject;
}

OrvErrorType OrvFeatureWrapper::GetIncrement(double& increment) const {
    return m_feature ? m_feature->GetIncrement(increment) : noObject;
}

OrvErrorType OrvFeatureWrapper::GetIncrement(std::int64_t& increment) const {
    return m_feature ? m_feature->GetIncrement(increment) : noObject;
}

OrvErrorType OrvFeatureWrapper::IsValueAvailable(std::int64_t value, bool& available) const {
    return m_feature ? m_feature->IsValueAvailable(value, available) : noObject;
}

void OrvFeatureWrapper::Reserved24() {}

OrvErrorType OrvFeatureWrapper::IsValueAvailable(const char* value, bool& available) const {
    return m_feature ? m_feature->IsValueAvailable(value, available) : noObject;
}

OrvErrorType OrvFeatureWrapper::RunCommand() {
    return m_feature ? m_feature->RunCommand() : noObject;
}

OrvErrorType OrvFeatureWrapper::IsCommandDone(bool& done) const {
    return m_feature ? m_feature->IsCommandDone(done) : noObject;
}

OrvErrorType OrvFeatureWrapper::GetName(std::string& name) const {
    return SdkQuery::text(m_feature.get(), name, &OrvCPP::Feature::GetName);
}

OrvErrorType OrvFeatureWrapper::GetDisplayName(std::string& name) const {
    return SdkQuery::text(m_feature.get(), name, &OrvCPP::Feature::GetDisplayName);
}

OrvErrorType OrvFeatureWrapper::GetDataType(OrvFeatureDataType& type) const {
    return m_feature ? m_feature->GetDataType(type) : noObject;
}

OrvErrorType OrvFeatureWrapper::GetFlags(OrvFeatureFlagsType& flags) const {
    return m_feature ? m_feature->GetFlags(flags) : noObject;
}

OrvErrorType OrvFeatureWrapper::GetCategory(std::string& category) const {
    return SdkQuery::text(m_feature.get(), category, &OrvCPP::Feature::GetCategory);
}

OrvErrorType OrvFeatureWrapper::GetUnit(std::string& unit) const {
    return SdkQuery::text(m_feature.get(), unit, &OrvCPP::Feature::GetUnit);
}

OrvErrorType OrvFeatureWrapper::GetRepresentation(std::string& representation) const {
    return SdkQuery::text(m_feature.get(), representation, &OrvCPP::Feature::GetRepresentation);
}

OrvErrorType OrvFeatureWrapper::GetVisibility(OrvFeatureVisibilityType& visibility) const {
    return m_feature ? m_feature->GetVisibility(visibility) : noObject;
}

OrvErrorType OrvFeatureWrapper::GetToolTip(std::string& toolTip) const {
    return SdkQuery::text(m_feature.get(), toolTip, &OrvCPP::Feature::GetToolTip);
}

OrvErrorType OrvFeatureWrapper::GetDescription(std::string& description) const {
    return SdkQuery::text(m_feature.get(), description, &OrvCPP::Feature::GetDescription);
}

OrvErrorType OrvFeatureWrapper::GetSelectedFeatures(
    std::vector<std::shared_ptr<OrvFeatureWrapper>>& features) const {
    return SdkQuery::wrappers<OrvCPP::Feature>(m_feature.get(), features,
                                               &OrvCPP::Feature::GetSelectedFeatures);
}

OrvErrorType OrvFeatureWrapper::GetValidValueSet(std::vector<std::int64_t>& values) const {
    return SdkQuery::elements(m_feature.get(), values, &OrvCPP::Feature::GetValidValueSet);
}

OrvErrorType OrvFeatureWrapper::IsReadable(bool& readable) const {
    return m_feature ? m_feature->IsReadable(readable) : noObject;
}

OrvErrorType OrvFeatureWrapper::IsWritable(bool& writable) const {
    return m_feature ? m_feature->IsWritable(writable) : noObject;
}

OrvErrorType
OrvFeatureWrapper::RegisterObserver(const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) {
    return m_feature ? m_feature->RegisterObserver(observer) : noObject;
}

OrvErrorType
OrvFeatureWrapper::UnregisterObserver(const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) {
    return m_feature ? m_feature->UnregisterObserver(observer) : noObject;
}
