// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/SdkLog.h"

#include <iostream>

namespace orv {

namespace {

void writeLine(const char* prefix, const std::string& text) {
    const std::string line = prefix + text + '\n';
    std::cout.write(line.data(), static_cast<std::streamsize>(line.size())).flush();
}

} // namespace

void logInfo(const std::string& text) {
    writeLine("Info:", text);
}

void logWarning(const std::string& text) {
    writeLine("Warning:", text);
}

} // namespace orv
