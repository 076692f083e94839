// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ReportFile.h"

#include "cli/Failure.h"

namespace cli {

ReportFile::ReportFile(const QString& name) : m_file(name) {
    if (!m_file.open(QIODevice::WriteOnly))
        fail();
}

void ReportFile::write(const QByteArray& content) {
    if (m_file.write(content) != content.size() || !m_file.commit())
        fail();
}

void ReportFile::fail() const {
    throw Failure(
        QStringLiteral("%1 cannot be written: %2.").arg(m_file.fileName(), m_file.errorString()));
}

} // namespace cli
