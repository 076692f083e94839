// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/FeatureContainer.h"

namespace OrvCPP {

/// The host's view of one opened camera. Thread-safe.
class ORVCPP_API LocalDevice : public FeatureContainer {};

} // namespace OrvCPP
