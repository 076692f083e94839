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

/// The lines from \p offset on that fit. Limits the offset, so that the last lines fill the room.
QStringList scrolled(const QStringList& lines, ConsoleSize room, int& offset) {
    const auto shown = [&](int from) {
        return fitting(lines.mid(from), room.columns, room.rows);
    };
    offset = std::clamp(offset, 0, std::max(lines.size() - 1, 0));
    while (offset > 0 && shown(offset - 1).size() == lines.size() - offset + 1)
        --offset;
    return shown(offset);
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

void Terminal::draw(const QStringList& lines, int headings) {
    const std::lock_guard lock(m_mutex);
    const QString before = erased();
    m_block = lines;
    m_headings = headings;
    writeOutput(before + shown());
}

void Terminal::scroll(Key key) {
    const std::lock_guard lock(m_mutex);
    const int page = std::max(m_shownBody, 1);
    const QString before = erased();
    switch (key) {
    case Key::Up:
        m_offset -= 1;
        break;
    case Key::Down:
        m_offset += 1;
        break;
    case Key::PageUp:
        m_offset -= page;
        break;
    case Key::PageDown:
        m_offset += page;
        break;
    case Key::Home:
        m_offset = 0;
        break;
    case Key::End:
        m_offset = m_block.size();
        break;
    case Key::Quit:
        break;
    }
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
    if (m_shownLines.size() == m_block.size()) {
        m_offset = 0;
        return joined(m_shownLines);
    }
    m_shownLines = fitting(m_block.mid(0, m_headings), size.columns, room - 1);
    int left = room - 1;
    for (const QString& line : qAsConst(m_shownLines))
        left -= rowsOf(line, size.columns);
    const QStringList body = scrolled(m_block.mid(m_headings), {size.columns, left}, m_offset);
    m_shownBody = body.size();
    m_shownLines += body;
    m_shownLines.append(
        QStringLiteral("(%1 more lines)").arg(m_block.size() - m_shownLines.size()));
    return joined(m_shownLines);
}

} // namespace cli
