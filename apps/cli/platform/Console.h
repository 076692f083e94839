// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace cli {

/// Size of a terminal in characters.
struct ConsoleSize {
    int columns = 80;
    int rows = 24;
};

/// Opens the null device for each closed standard stream. Otherwise the next file or socket would
/// get its number, and output would go there. Call before anything is opened.
void keepStandardStreams();

/// Sets the code page of a Windows console to UTF-8, the encoding of the program's output, and
/// restores it when destroyed. No effect on other systems.
class Utf8Console {
public:
    Utf8Console();
    ~Utf8Console();

    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;

private:
    [[maybe_unused]] unsigned m_previous = 0;
};

/// Whether the standard output stream is a terminal that understands cursor sequences.
bool isConsole();
/// Whether that terminal shows UTF-8: by the locale of the user, or the code page of the console.
bool isUtf8Console();
/// Present size of that terminal; 80 x 24 where it is unknown.
ConsoleSize consoleSize();

} // namespace cli
