// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Screen.h"

#include "cli/Table.h"
#include "cli/platform/Console.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace cli {

namespace {

/// Answers whether all was written.
bool write(std::FILE* stream, const QString& text) {
    return std::fputs(text.toUtf8().constData(), stream) >= 0 && std::fflush(stream) == 0;
}

/// Rows of a terminal that a line takes; one that has become narrower has broken it.
int rowsOf(const QString& line, int columns) {
    return std::max(1, (line.size() + columns - 1) / columns);
}

} // namespace

Screen::Screen() : m_isInteractive(isConsole()) {}

int Screen::columns() const {
    return consoleSize().columns;
}

void Screen::print(const QString& text) {
    const std::lock_guard lock(m_mutex);
    writeOutput(text);
}

void Screen::message(const QString& line) {
    const std::lock_guard lock(m_mutex);
    writeOutput(erased());
    write(stderr, line + QLatin1Char('\n'));
    writeOutput(shown());
}

void Screen::draw(const QStringList& lines) {
    const std::lock_guard lock(m_mutex);
    const QString before = erased();
    m_block = lines;
    writeOutput(before + shown());
}

void Screen::clear() {
    draw({});
}

int Screen::outputError() {
    const std::lock_guard lock(m_mutex);
    return m_outputError;
}

void Screen::writeOutput(const QString& text) {
    if (!text.isEmpty() && !write(stdout, text) && m_outputError == 0)
        m_outputError = errno;
}

/// The cursor goes back to the block's first line, and everything below is cleared.
QString Screen::erased() {
    const int columns = consoleSize().columns;
    int rows = 0;
    for (const QString& line : qAsConst(m_shownLines))
        rows += rowsOf(line, columns);
    m_shownLines.clear();
    return rows > 0 ? QStringLiteral("\x1b[%1F\x1b[J").arg(rows) : QString();
}

QString Screen::shown() {
    const ConsoleSize size = consoleSize();
    // The last row is the cursor's own.
    const int room = std::max(size.rows - 1, 1);
    QStringList lines = m_block.mid(0, room);
    if (m_block.size() > room)
        lines.last() = QStringLiteral("(%1 more lines)").arg(m_block.size() - room + 1);
    for (const QString& line : qAsConst(lines))
        m_shownLines.append(line.left(size.columns));
    return joined(m_shownLines);
}

} // namespace cli
