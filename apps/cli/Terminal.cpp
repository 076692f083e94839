// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Terminal.h"

#include "cli/Table.h"
#include "cli/platform/Console.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <limits>

namespace cli {

namespace {

/// Returns whether everything was written.
bool write(std::FILE* stream, const QString& text) {
    return std::fputs(text.toUtf8().constData(), stream) >= 0 && std::fflush(stream) == 0;
}

/// Number of rows that a line covers.
int rowsOf(const QString& line, int columns) {
    return std::max(1, (line.size() + columns - 1) / columns);
}

/// The first lines that fit into so many rows.
QStringList fitting(const QStringList& lines, int columns, int rows) {
    int count = 0;
    while (count < lines.size() && rowsOf(lines[count], columns) <= rows)
        rows -= rowsOf(lines[count++], columns);
    return lines.mid(0, count);
}

} // namespace

Terminal::Terminal() : m_isInteractive(isConsole()) {}

int Terminal::lineWidth() const {
    return m_isInteractive ? consoleSize().columns : std::numeric_limits<int>::max();
}

void Terminal::print(const QString& text) {
    const std::lock_guard lock(m_mutex);
    writeOutput(text);
}

void Terminal::message(const QString& line) {
    const std::lock_guard lock(m_mutex);
    writeOutput(erased());
    write(stderr, line + QLatin1Char('\n'));
    writeOutput(shown());
}

void Terminal::draw(const QStringList& lines) {
    const std::lock_guard lock(m_mutex);
    const QString before = erased();
    m_block = lines;
    writeOutput(before + shown());
}

void Terminal::clear() {
    draw({});
}

int Terminal::outputError() {
    const std::lock_guard lock(m_mutex);
    return m_outputError;
}

void Terminal::writeOutput(const QString& text) {
    if (!text.isEmpty() && !write(stdout, text) && m_outputError == 0)
        m_outputError = errno;
}

/// Moves the cursor to the block's first line and clears everything below (ECMA-48 CPL and ED).
QString Terminal::erased() {
    const int columns = consoleSize().columns;
    int rows = 0;
    for (const QString& line : qAsConst(m_shownLines))
        rows += rowsOf(line, columns);
    m_shownLines.clear();
    return rows > 0 ? QStringLiteral("\x1b[%1F\x1b[J").arg(rows) : QString();
}

QString Terminal::shown() {
    const ConsoleSize size = consoleSize();
    // The last row is for the cursor.
    const int room = std::max(size.rows - 1, 1);
    m_shownLines = fitting(m_block, size.columns, room);
    if (m_shownLines.size() < m_block.size()) {
        m_shownLines = fitting(m_block, size.columns, room - 1);
        m_shownLines.append(
            QStringLiteral("(%1 more lines)").arg(m_block.size() - m_shownLines.size()));
    }
    return joined(m_shownLines);
}

} // namespace cli
