// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gige/Gvcp.h"

#include "OrvCPP/OrvTypes.h"

namespace orv::aravis {

/// Access to a camera that no program controls.
constexpr auto allModes = static_cast<OrvAccessModeType>(OrvAccessModeFull | OrvAccessModeRead);

/// The access that a camera grants by this answer about its privilege register.
OrvAccessModeType grantedBy(const gige::GvcpAnswer& privilege);

} // namespace orv::aravis
