// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace cli {

/// Characters that a terminal shows.
struct ConsoleSize {
    int columns = 80;
    int rows = 24;
};

/// Fills in for standard streams that the program was started without, so that what it opens does
/// not get their place and the output with it. To be called before anything is opened.
void keepStandardStreams();

/// While it lives, a terminal takes what is written to it as UTF-8, which all our texts are. Only
/// one of Windows has to be told.
class Utf8Console {
public:
    Utf8Console();
    ~Utf8Console();

    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;

private:
    unsigned m_previous = 0;
};

/// Whether the standard output stream is a terminal that moves its cursor when it is told to.
bool isConsole();
/// Size of that terminal now.
ConsoleSize consoleSize();

} // namespace cli
