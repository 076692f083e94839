// SPDX-License-Identifier: BSD-3-Clause
#include "logging/Log.h"

#include "logging/ForwardingBuffer.h"
#include "sdk/ErrorText.h"

#include <iostream>

namespace {

/// Writes the line in one call, so that lines of several threads do not mix. Writes to the buffer:
/// the stream's own state is not thread-safe, and another thread may exchange its buffer.
void writeLine(const char* prefix, const std::string& text) {
    std::streambuf* const buffer = Logging::bufferOf(std::cout);
    if (buffer == nullptr)
        return;
    const std::string line = prefix + text + '\n';
    buffer->sputn(line.data(), static_cast<std::streamsize>(line.size()));
    buffer->pubsync();
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
