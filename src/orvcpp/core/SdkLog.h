// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

namespace orv {

/// One line of information on the standard output, in one piece. Thread-safe.
void logInfo(const std::string& text);
void logWarning(const std::string& text);

} // namespace orv
