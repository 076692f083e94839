// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QStringList>

#include <mutex>

namespace cli {

/// Where the program writes to: results on the standard output stream, messages on the standard
/// error stream. On a terminal a block of lines can be redrawn in place, with messages above it.
/// Thread-safe.
class Screen {
public:
    Screen();

    /// Whether the standard output stream is a terminal.
    bool isInteractive() const { return m_isInteractive; }

    /// Characters in a line of that terminal now.
    int columns() const;

    void print(const QString& text);
    void message(const QString& line);

    /// Replaces the block of lines; what does not fit into the window is cut off, and lines that do
    /// not are counted.
    void draw(const QStringList& lines);
    /// Takes the block away.
    void clear();

    /// The system's error code of what could not be written to the standard output stream; 0 as
    /// long as all was written.
    int outputError();

private:
    void writeOutput(const QString& text);
    /// What takes the shown lines away, and what shows the block.
    QString erased();
    QString shown();

    const bool m_isInteractive;
    std::mutex m_mutex;
    /// Guarded by m_mutex, as is the rest.
    QStringList m_block;
    QStringList m_shownLines;
    int m_outputError = 0;
};

} // namespace cli
