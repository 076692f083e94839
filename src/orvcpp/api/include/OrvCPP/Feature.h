// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/EnumEntry.h"
#include "OrvCPP/Forward.h"
#include "OrvCPP/OrvExport.h"
#include "OrvCPP/OrvTypes.h"

#include <cstdint>
#include <memory>

namespace OrvCPP {

/// One named feature of a module. Thread-safe.
///
/// Texts are handed out through a buffer and a length in bytes, without a terminator: called with
/// no buffer, the length needed is stored; called with a buffer, the text is copied and its length
/// stored, or OrvErrorMoreData answered when the buffer is too short. Lists are handed out in the
/// same way, through an array and a count.
class ORVCPP_API Feature {
public:
    virtual ~Feature() = default;

    /// Raw value (register features). \p size is the buffer's size, and the size needed when
    /// there is no buffer; \p sizeFilled is what was copied.
    virtual OrvErrorType GetValue(std::uint8_t* buffer, std::uint32_t& size,
                                  std::uint32_t& sizeFilled) const = 0;
    virtual OrvErrorType GetValue(bool& value) const = 0;
    /// Value of a string feature, or name of the current entry of an enumeration.
    virtual OrvErrorType GetValue(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetValue(double& value) const = 0;
    /// Value of an integer feature, or number of the current entry of an enumeration.
    virtual OrvErrorType GetValue(std::int64_t& value) const = 0;
    /// Entry names of an enumeration; the texts belong to the feature and live as long as it does.
    virtual OrvErrorType GetValues(const char** values, std::uint32_t& count) const = 0;
    /// Entry numbers of an enumeration.
    virtual OrvErrorType GetValues(std::int64_t* values, std::uint32_t& count) const = 0;
    virtual OrvErrorType GetEntry(EnumEntry& entry, const char* name) const = 0;
    virtual OrvErrorType GetEntries(EnumEntry* entries, std::uint32_t& count) const = 0;
    virtual OrvErrorType GetRange(std::int64_t& minimum, std::int64_t& maximum) const = 0;
    virtual OrvErrorType GetRange(double& minimum, double& maximum) const = 0;

    virtual OrvErrorType SetValue(const std::uint8_t* data, std::uint32_t size) = 0;
    /// Sets a string, or an enumeration by the name of an entry.
    virtual OrvErrorType SetValue(const char* value) = 0;
    virtual OrvErrorType SetValue(bool value) = 0;
    virtual OrvErrorType SetValue(double value) = 0;
    /// Sets an integer, or an enumeration by the number of an entry.
    virtual OrvErrorType SetValue(std::int64_t value) = 0;

    virtual OrvErrorType HasIncrement(bool& hasIncrement) const = 0;
    virtual OrvErrorType GetIncrement(double& increment) const = 0;
    virtual OrvErrorType GetIncrement(std::int64_t& increment) const = 0;
    virtual OrvErrorType IsValueAvailable(std::int64_t value, bool& available) const = 0;
    virtual OrvErrorType IsValueAvailable(const char* value, bool& available) const = 0;

    virtual OrvErrorType RunCommand() = 0;
    virtual OrvErrorType IsCommandDone(bool& done) const = 0;

    virtual OrvErrorType GetName(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetDisplayName(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetDataType(OrvFeatureDataType& type) const = 0;
    virtual OrvErrorType GetFlags(OrvFeatureFlagsType& flags) const = 0;
    /// Path of categories from the module's root, for example "/ImageFormatControl".
    virtual OrvErrorType GetCategory(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetUnit(char* buffer, std::uint32_t& length) const = 0;
    /// GenICam representation, for example "Linear", "HexNumber" or "IPV4Address".
    virtual OrvErrorType GetRepresentation(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetVisibility(OrvFeatureVisibilityType& visibility) const = 0;
    virtual OrvErrorType GetToolTip(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetDescription(char* buffer, std::uint32_t& length) const = 0;
    /// Features whose values depend on the entry that this (selector) feature has.
    virtual OrvErrorType GetSelectedFeatures(std::shared_ptr<Feature>* features,
                                             std::uint32_t& count) const = 0;
    /// The permitted values of an integer feature that allows only some within its range;
    /// OrvErrorValidValueSetNotPresent for every other feature.
    virtual OrvErrorType GetValidValueSet(std::int64_t* values, std::uint32_t& count) const = 0;

    virtual OrvErrorType IsReadable(bool& readable) const = 0;
    virtual OrvErrorType IsWritable(bool& writable) const = 0;

    virtual OrvErrorType RegisterObserver(const std::shared_ptr<IFeatureObserver>& observer) = 0;
    virtual OrvErrorType UnregisterObserver(const std::shared_ptr<IFeatureObserver>& observer) = 0;
};

/// Told when a feature's value, range or access may have changed.
class ORVCPP_API IFeatureObserver {
public:
    virtual ~IFeatureObserver() = default;
    /// Called on the thread that caused the change, or on one of the SDK's own.
    virtual void FeatureChanged(const std::shared_ptr<Feature>& feature) = 0;
};

} // namespace OrvCPP
