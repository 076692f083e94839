// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"
#include "features/FeatureValue.h"

#include <string>
#include <vector>

/// Full description of one feature. What can change while a camera is open (access, value, limits,
/// available entries) was read at one moment. Fields that could not be read keep their defaults: an
/// empty text, false, 0. Texts are UTF-8.
struct FeatureInfo {
    std::string category;
    std::string name;
    std::string displayName;
    std::string description;
    /// GenICam representation, for example "HexNumber", "IPV4Address" or "Logarithmic".
    std::string representation;
    std::string toolTip;
    std::string unit;
    bool readable = false;
    bool writable = false;
    OrvFeatureVisibilityType visibility = OrvFeatureVisibilityUnknown;
    OrvFeatureDataType dataType = OrvFeatureDataUnknown;
    FeatureValue value;
    FeatureValue minimum;
    FeatureValue maximum;
    FeatureValue increment;
    /// Entry names of an enumeration.
    std::vector<std::string> values;
    /// The entries that can be chosen now, each a text.
    std::vector<FeatureValue> availableValues;
};
