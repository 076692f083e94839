// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/platform/Keyboard.h"

#include <QString>
#include <QStringList>

#include <mutex>

namespace cli {

/// Output of the program: results on the standard output stream, messages on the standard error
/// stream. On a terminal a block of lines can be redrawn in place and scrolled, with messages above
/// it. Thread-safe.
class Terminal {
public:
    Terminal();

    /// Whether the standard output stream is a terminal.
    bool isInteractive() const { return m_isInteractive; }

    /// Longest line in characters that is shown on one row: the present width of the terminal, or
    /// any where there is none.
    int lineWidth() const;

    void print(const QString& text);
    void message(const QString& line);

    /// Replaces the block of lines. Lines that are too long take several rows; lines for which
    /// there are no rows are replaced by their count. The first \p headings lines stay where they
    /// are when the others are scrolled.
    void draw(const QStringList& lines, int headings = 0);
    /// Scrolls the lines of a block that does not fit. Quit does nothing.
    void scroll(Key key);
    /// Removes the block.
    void clear();

    /// The errno of the first failed write to the standard output stream; 0 when all was written.
    int outputError();

private:
    void writeOutput(const QString& text);
    /// Escape sequence that removes the shown lines.
    QString erased();
    /// The block as lines that fit the terminal.
    QString shown();

    const bool m_isInteractive;
    std::mutex m_mutex;
    /// Guarded by m_mutex, like the members below.
    QStringList m_block;
    int m_headings = 0;
    /// Number of lines that are scrolled out at the top, and of those that are shown below the
    /// headings.
    int m_offset = 0;
    int m_shownBody = 0;
    QStringList m_shownLines;
    int m_outputError = 0;
};

} // namespace cli
