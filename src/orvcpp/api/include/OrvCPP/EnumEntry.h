// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <cstdint>
#include <string>

namespace OrvCPP {

/// One entry of an enumeration feature.
struct EnumEntry {
    std::string name;
    std::string displayName;
    std::string description;
    std::string toolTip;
    OrvFeatureVisibilityType visibility = OrvFeatureVisibilityUnknown;
    std::int64_t value = 0;
};

} // namespace OrvCPP
