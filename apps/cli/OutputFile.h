// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <QString>

namespace cli {

/// A file that is written at the end of a command. Until then, and when the command fails, a former
/// file of that name stays as it is.
class OutputFile {
public:
    /// Whether the file is new or a regular one. A device, a pipe or a folder must not be replaced.
    static bool mayReplace(const QString& name);

    /// Throws a Failure when the file cannot be written or must not be replaced.
    explicit OutputFile(const QString& name);

    /// Writes all of the file. Throws a Failure.
    void write(const QByteArray& content);

private:
    [[noreturn]] void fail() const;

    QSaveFile m_file;
};

} // namespace cli
