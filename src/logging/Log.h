// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <string>

/// Each function writes one line, prefix and message, to the standard output stream, where
/// Logging::ThreadLogStream picks it up. The forms with a code append one blank and the code's
/// text. Thread-safe.
void logDebug(const std::string& text);
void logDebug(const std::string& text, OrvErrorType error);
void logInfo(const std::string& text);
void logInfo(const std::string& text, OrvErrorType error);
void logWarning(const std::string& text);
void logWarning(const std::string& text, OrvErrorType error);
/// An error goes to the standard output stream, too.
void logError(const std::string& text);
void logError(const std::string& text, OrvErrorType error);
