// SPDX-License-Identifier: BSD-3-Clause
#include "cli/OutputFile.h"

#include "cli/Failure.h"

#include <QFileInfo>

namespace cli {

bool OutputFile::mayReplace(const QString& name) {
    const QFileInfo former(name);
    return !former.exists() || former.isFile();
}

OutputFile::OutputFile(const QString& name) : m_file(name) {
    if (!mayReplace(name))
        throw Failure(QStringLiteral("%1 cannot be written: It is no regular file.").arg(name));
    if (!m_file.open(QIODevice::WriteOnly))
        fail();
}

void OutputFile::write(const QByteArray& content) {
    if (m_file.write(content) != content.size() || !m_file.commit())
        fail();
}

void OutputFile::fail() const {
    throw Failure(
        QStringLiteral("%1 cannot be written: %2.").arg(m_file.fileName(), m_file.errorString()));
}

} // namespace cli
