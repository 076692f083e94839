// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <chrono>

class OrvFeatureWrapper;

/// Asks, without a pause, whether a command that was started is done, until it is, until the
/// query fails (which ends the wait without being an error) or until \p limit has passed:
/// OrvErrorTimeout.
OrvErrorType waitForCommand(const OrvFeatureWrapper& command, std::chrono::milliseconds limit);
