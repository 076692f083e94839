// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Screen.h"

#include "cli/platform/Console.h"

#include <algorithm>
#include <cstdio>

namespace cli {

namespace {

void write(std::FILE* stream, const QString& text) {
    std::fputs(text.toUtf8().constData(), stream);
    std::fflush(stream);
}

} // namespace

Screen::Screen() : m_isInteractive(isConsole()) {}

void Screen::print(const QString& text) {
    const std::lock_guard lock(m_mutex);
    write(stdout, text);
}

void Screen::message(const QString& line) {
    const std::lock_guard lock(m_mutex);
    erase();
    write(stderr, line + QLatin1Char('\n'));
    show();
}

void Screen::draw(const QStringList& lines) {
    const std::lock_guard lock(m_mutex);
    erase();
    m_block = lines;
    show();
}

void Screen::clear() {
    draw({});
}

bool Screen::flush() {
    const std::lock_guard lock(m_mutex);
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

/// The cursor goes back to the block's first line, and everything below is cleared.
void Screen::erase() {
    if (m_shownLines > 0)
        write(stdout, QStringLiteral("\x1b[%1F\x1b[J").arg(m_shownLines));
    m_shownLines = 0;
}

void Screen::show() {
    const ConsoleSize size = consoleSize();
    // The last row is the cursor's own.
    m_shownLines = std::clamp(m_block.size(), 0, std::max(size.rows - 1, 0));
    QString text;
    for (int i = 0; i < m_shownLines; ++i)
        text += m_block[i].left(size.columns) + QLatin1Char('\n');
    write(stdout, text);
}

} // namespace cli
