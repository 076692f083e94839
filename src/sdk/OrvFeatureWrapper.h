// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Feature.h"
#include "sdk/WrapperDeclarations.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// One feature of a camera's module. Forwards to OrvCPP::Feature and turns its buffers and arrays
/// into standard containers. Results are the SDK's; on an error, lists are empty and texts are
/// left as they were. Never throws, never logs. Thread-safe as far as the SDK's object is.
///
/// The order of the virtual functions is fixed; Reserved15 and Reserved24 do nothing but keep the
/// places of the others.
class OrvFeatureWrapper {
public:
    explicit OrvFeatureWrapper(std::shared_ptr<OrvCPP::Feature> feature = {});
    virtual ~OrvFeatureWrapper();

    OrvFeatureWrapper(const OrvFeatureWrapper&) = delete;
    OrvFeatureWrapper& operator=(const OrvFeatureWrapper&) = delete;

    /// The held pointer, for the SDK to fill.
    virtual std::shared_ptr<OrvCPP::Feature>& GetHandle();
    virtual OrvErrorType GetValue(std::vector<std::uint8_t>& value) const;
    virtual OrvErrorType GetValue(std::vector<std::uint8_t>& value,
                                  std::uint32_t& sizeFilled) const;
    virtual OrvErrorType GetValue(bool& value) const;
    virtual OrvErrorType GetValue(std::string& value) const;
    virtual OrvErrorType GetValue(double& value) const;
    virtual OrvErrorType GetValue(std::int64_t& value) const;
    virtual OrvErrorType GetValues(std::vector<std::string>& values) const;
    virtual OrvErrorType GetValues(std::vector<std::int64_t>& values) const;
    virtual OrvErrorType GetEntry(OrvCPP::EnumEntry& entry, const char* name) const;
    virtual OrvErrorType GetEntries(std::vector<OrvCPP::EnumEntry>& entries) const;
    virtual OrvErrorType GetRange(std::int64_t& minimum, std::int64_t& maximum) const;
    virtual OrvErrorType GetRange(double& minimum, double& maximum) const;
    virtual OrvErrorType SetValue(const std::uint8_t* data, std::uint32_t size);
    virtual void Reserved15();
    virtual OrvErrorType SetValue(const char* value);
    virtual OrvErrorType SetValue(bool value);
    virtual OrvErrorType SetValue(double value);
    virtual OrvErrorType SetValue(std::int64_t value);
    virtual OrvErrorType HasIncrement(bool& hasIncrement) const;
    virtual OrvErrorType GetIncrement(double& increment) const;
    virtual OrvErrorType GetIncrement(std::int64_t& increment) const;
    virtual OrvErrorType IsValueAvailable(std::int64_t value, bool& available) const;
    virtual void Reserved24();
    virtual OrvErrorType IsValueAvailable(const char* value, bool& available) const;
    virtual OrvErrorType RunCommand();
    virtual OrvErrorType IsCommandDone(bool& done) const;
    virtual OrvErrorType GetName(std::string& name) const;
    virtual OrvErrorType GetDisplayName(std::string& name) const;
    virtual OrvErrorType GetDataType(OrvFeatureDataType& type) const;
    virtual OrvErrorType GetFlags(OrvFeatureFlagsType& flags) const;
    virtual OrvErrorType GetCategory(std::string& category) const;
    virtual OrvErrorType GetUnit(std::string& unit) const;
    virtual OrvErrorType GetRepresentation(std::string& representation) const;
    virtual OrvErrorType GetVisibility(OrvFeatureVisibilityType& visibility) const;
    virtual OrvErrorType GetToolTip(std::string& toolTip) const;
    virtual OrvErrorType GetDescription(std::string& description) const;
    virtual OrvErrorType
    GetSelectedFeatures(std::vector<std::shared_ptr<OrvFeatureWrapper>>& features) const;
    virtual OrvErrorType GetValidValueSet(std::vector<std::int64_t>& values) const;
    virtual OrvErrorType IsReadable(bool& readable) const;
    virtual OrvErrorType IsWritable(bool& writable) const;
    virtual OrvErrorType
    RegisterObserver(const std::shared_ptr<OrvCPP::IFeatureObserver>& observer);
    virtual OrvErrorType
    UnregisterObserver(const std::shared_ptr<OrvCPP::IFeatureObserver>& observer);

private:
    std::shared_ptr<OrvCPP::Feature> m_feature;
};
