// SPDX-License-Identifier: BSD-3-Clause
#include "cli/LossCapture.h"

#include "cli/Failure.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace cli {

namespace {

using namespace std::chrono_literals;

/// The file is replaced when all its packets are older than its first one was.
constexpr auto betweenFiles = observer::PacketRecord::age;

std::filesystem::path pathOf(const QString& file) {
    return QFile::encodeName(file).toStdString();
}

} // namespace

LossCapture::LossCapture(const QString& file, Packets packets)
    : m_file(file), m_packets(std::move(packets)) {
    const QFileInfo target(file);
    const QFileInfo folder(target.absolutePath());
    if (file.isEmpty() || target.isDir() || !folder.isDir() || !folder.isWritable())
        throw Failure(QStringLiteral("Packets cannot be written to \"%1\": %2")
                          .arg(file, file.isEmpty() || target.isDir()
                                         ? QStringLiteral("it is no file.")
                                     : folder.isDir()
                                         ? QStringLiteral("this user may not write to its folder.")
                                         : QStringLiteral("there is no such folder.")),
                      ExitCode::WrongUse);
}

void LossCapture::note(std::uint64_t losses) {
    m_hasNewLosses = m_hasNewLosses || losses > m_losses;
    m_losses = losses;
    if (m_writing.valid() && m_writing.wait_for(0s) == std::future_status::ready)
        end();
    const bool isDue = !m_begun || Clock::now() - *m_begun >= betweenFiles;
    if (m_hasNewLosses && isDue && !m_writing.valid())
        begin();
}

void LossCapture::finish() {
    if (m_writing.valid())
        end();
    if (!m_hasNewLosses)
        return;
    begin();
    end();
}

void LossCapture::begin() {
    m_hasNewLosses = false;
    m_begun = Clock::now();
    m_writing = std::async(std::launch::async, observer::writeCapture, pathOf(m_file), m_packets());
}

void LossCapture::end() {
    const std::error_code error = m_writing.get();
    m_document = {{QStringLiteral("file"), m_file}};
    if (error)
        m_document[QStringLiteral("error")] = QString::fromStdString(error.message());
    else
        m_document[QStringLiteral("writtenAfterSeconds")] =
            std::chrono::duration<double>(*m_begun - m_start).count();
}

} // namespace cli
