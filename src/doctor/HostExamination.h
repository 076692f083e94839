// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "doctor/Finding.h"
#include "doctor/HostEvidence.h"

namespace doctor {

/// All checks of a host, the most serious findings first; those that are as they should be and
/// those that could not be made are among them. Adapters without cameras are checked for their
/// addresses only. Pure, reentrant.
Findings examine(const HostEvidence& evidence);

} // namespace doctor
