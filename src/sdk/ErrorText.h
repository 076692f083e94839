// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <string>

/// English text of an SDK result code, in parentheses, as it ends log messages. Thread-safe.
std::string errorText(OrvErrorType code);
