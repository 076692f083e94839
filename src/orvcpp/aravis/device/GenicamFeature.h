// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/device/FeatureDescription.h"

#include "OrvCPP/Feature.h"

#include <memory>

namespace orv::aravis {

class FeatureAccess;

/// One feature of an opened camera. Thread-safe; what never changes is answered from memory.
class GenicamFeature final : public OrvCPP::Feature {
public:
    GenicamFeature(std::shared_ptr<FeatureAccess> access,
                   std::shared_ptr<const FeatureDescription> description);

    OrvErrorType GetValue(std::uint8_t* buffer, std::uint32_t& size,
                          std::uint32_t& sizeFilled) const override;
    OrvErrorType GetValue(bool& value) const override;
    OrvErrorType GetValue(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetValue(double& value) const override;
    OrvErrorType GetValue(std::int64_t& value) const override;
    OrvErrorType GetValues(const char** values, std::uint32_t& count) const override;
    OrvErrorType GetValues(std::int64_t* values, std::uint32_t& count) const override;
    OrvErrorType GetEntry(OrvCPP::EnumEntry& entry, const char* name) const override;
    OrvErrorType GetEntries(OrvCPP::EnumEntry* entries, std::uint32_t& count) const override;
    OrvErrorType GetRange(std::int64_t& minimum, std::int64_t& maximum) const override;
    OrvErrorType GetRange(double& minimum, double& maximum) const override;
    OrvErrorType SetValue(const std::uint8_t* data, std::uint32_t size) override;
    OrvErrorType SetValue(const char* value) override;
    OrvErrorType SetValue(bool value) override;
    OrvErrorType SetValue(double value) override;
    OrvErrorType SetValue(std::int64_t value) override;
    OrvErrorType HasIncrement(bool& hasIncrement) const override;
    OrvErrorType GetIncrement(double& increment) const override;
    OrvErrorType GetIncrement(std::int64_t& increment) const override;
    OrvErrorType IsValueAvailable(std::int64_t value, bool& available) const override;
    OrvErrorType IsValueAvailable(const char* value, bool& available) const override;
    OrvErrorType RunCommand() override;
    OrvErrorType IsCommandDone(bool& done) const override;
    OrvErrorType GetName(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetDisplayName(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetDataType(OrvFeatureDataType& type) const override;
    OrvErrorType GetFlags(OrvFeatureFlagsType& flags) const override;
    OrvErrorType GetCategory(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetUnit(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetRepresentation(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetVisibility(OrvFeatureVisibilityType& visibility) const override;
    OrvErrorType GetToolTip(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetDescription(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetSelectedFeatures(std::shared_ptr<OrvCPP::Feature>* features,
                                     std::uint32_t& count) const override;
    OrvErrorType GetValidValueSet(std::int64_t* values, std::uint32_t& count) const override;
    OrvErrorType IsReadable(bool& readable) const override;
    OrvErrorType IsWritable(bool& writable) const override;
    OrvErrorType
    RegisterObserver(const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) override;
    OrvErrorType
    UnregisterObserver(const std::shared_ptr<OrvCPP::IFeatureObserver>& observer) override;

private:
    template <typename T, typename Read> OrvErrorType ask(T& result, Read read) const;
    template <typename Change> OrvErrorType change(Change apply);
    template <typename T> OrvErrorType describe(T& result, const T& known) const;
    template <typename List, typename Element>
    OrvErrorType describeList(const List& known, Element* array, std::uint32_t& count) const;
    OrvErrorType availability(const OrvCPP::EnumEntry* entry, bool& available) const;

    const std::shared_ptr<FeatureAccess> m_access;
    const std::shared_ptr<const FeatureDescription> m_description;
};

} // namespace orv::aravis
