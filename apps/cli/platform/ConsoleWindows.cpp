// SPDX-License-Identifier: BSD-3-Clause
#include "cli/platform/Console.h"

#include <windows.h>

namespace cli {

/// On Windows, new handles do not take the place of a missing stream.
void keepStandardStreams() {}

Utf8Console::Utf8Console() : m_previous(GetConsoleOutputCP()) {
    SetConsoleOutputCP(CP_UTF8);
}

Utf8Console::~Utf8Console() {
    // 0 where there is no console.
    if (m_previous != 0)
        SetConsoleOutputCP(m_previous);
}

bool isConsole() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(output, &mode) != 0 &&
           SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

bool isUtf8Console() {
    return GetConsoleOutputCP() == CP_UTF8;
}

ConsoleSize consoleSize() {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == 0)
        return {};
    return {info.srWindow.Right - info.srWindow.Left + 1,
            info.srWindow.Bottom - info.srWindow.Top + 1};
}

} // namespace cli
