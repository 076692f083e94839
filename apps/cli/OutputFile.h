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
    /// Throws a Failure when the file cannot be written, or is a device or a pipe, which must not
    /// be replaced by a file.
    explicit OutputFile(const QString& name);

    /// Writes all of the file. Throws a Failure.
    void write(const QByteArray& content);

private:
    [[noreturn]] void fail() const;

    QSaveFile m_file;
};

} // namespace cli
