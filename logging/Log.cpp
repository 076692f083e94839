// SPDX-License-Identifier: BSD-3-Clause
#include "logging/Log.h"

#include "sdk/ErrorText.h"

#include <iostream>

namespace {

/// The line goes out in one unformatted write: several threads log at the same moment, and neither
/// their characters may mix nor may they share the stream's formatting state.
void writeLine(const char* prefix, const std::string& text) {
    const std::string line = prefix + text + '\n';
    std::cout.write(line.data(), static_cast<std::streamsize>(line.size())).flush();
}

std::string withError(const std::string& text, OrvErrorType error) {
    return text + ' ' + errorText(error);
}

} // namespace

void logDebug(const std::string& text) {
    writeLine("Debug:", text);
}

void logDebug(const std::string& text, OrvErrorType error) {
    logDebug(withError(text, error));
}

void logInfo(const std::string& text) {
    writeLine("Info:", text);
}

void logInfo(const std::string& text, OrvErrorType error) {
    logInfo(withError(text, error));
}

void logWarning(const std::string& text) {
    writeLine("Warning:", text);
}

void logWarning(const std::string& text, OrvErrorType error) {
    logWarning(withError(text, error));
}

void logError(const std::string& text) {
    writeLine("Error:", text);
}

void logError(const std::string& text, OrvErrorType error) {
    logError(withError(text, error));
}
