// SPDX-License-Identifier: BSD-3-Clause
#include "cli/platform/Console.h"

#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include <fcntl.h>
#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace cli {

void keepStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // Opened in the wrong direction, so that reading or writing reports an error. open()
        // returns the lowest free number, which is this stream's.
        if (fcntl(stream, F_GETFD) < 0)
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

Utf8Console::Utf8Console() = default;
Utf8Console::~Utf8Console() = default;

bool isConsole() {
    const char* terminal = std::getenv("TERM");
    return isatty(STDOUT_FILENO) != 0 && terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

// QCoreApplication has set the locale.
bool isUtf8Console() {
    return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
}

ConsoleSize consoleSize() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
        return {};
    return {size.ws_col, size.ws_row};
}

} // namespace cli
