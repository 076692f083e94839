// SPDX-License-Identifier: BSD-3-Clause
#include "cli/LossCapture.h"

#include "cli/Failure.h"
#include "cli/OutputFile.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace cli {

namespace {

using namespace std::chrono_literals;

/// Two files have no packet in common.
constexpr auto betweenFiles = observer::PacketRecord::age;
/// A file that could not be written, as on a full disk, is not tried again at each interval.
constexpr auto betweenTries = 10s;

std::filesystem::path pathOf(const QString& file) {
    return QFile::encodeName(file).toStdString();
}

} // namespace

std::chrono::nanoseconds LossCapture::systemTime() {
    return std::chrono::system_clock::now().time_since_epoch();
}

LossCapture::LossCapture(const QString& file, Packets packets, Time time)
    : m_file(file), m_packets(std::move(packets)), m_time(std::move(time)), m_noted(m_time()) {
    const QFileInfo folder(QFileInfo(file).absolutePath());
    const bool isOther = file.isEmpty() || !OutputFile::mayReplace(file);
    if (isOther || !folder.isDir() || !folder.isWritable())
        throw Failure(QStringLiteral("Packets cannot be written to \"%1\": %2")
                          .arg(file, isOther ? QStringLiteral("it is no regular file.")
                                     : folder.isDir()
                                         ? QStringLiteral("this user may not write to its folder.")
                                         : QStringLiteral("there is no such folder.")),
                      ExitCode::WrongUse);
}

void LossCapture::note(std::uint64_t losses, std::chrono::nanoseconds recordedSince) {
    const std::chrono::nanoseconds now = m_time();
    if (losses > m_losses && !std::exchange(m_hasNewLosses, true))
        m_lossesSince = m_noted - longestJudgement;
    m_losses = losses;
    m_recordedSince = recordedSince;
    if (m_writing.valid() && m_writing.wait_for(0s) == std::future_status::ready)
        end();
    // At the next call, the record would have forgotten packets of the losses.
    const bool isLast = recordedSince + (now - m_noted) > m_lossesSince;
    m_noted = now;
    const auto age = m_begun ? Clock::now() - *m_begun : betweenFiles;
    const bool hasFailed = m_document.contains(QStringLiteral("error"));
    const bool isDue = age >= betweenFiles || (isLast && (!hasFailed || age >= betweenTries));
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
    m_writtenSince = m_lossesSince;
    m_isPartial = m_recordedSince > m_lossesSince;
    m_begun = Clock::now();
    m_writing = std::async(std::launch::async, observer::writeCapture, pathOf(m_file), m_packets());
}

void LossCapture::end() {
    const std::error_code error = m_writing.get();
    m_document = {{QStringLiteral("file"), m_file}};
    if (error) {
        m_hasNewLosses = true;
        // Older than losses that were noted meanwhile.
        m_lossesSince = m_writtenSince;
        m_document[QStringLiteral("error")] = QString::fromStdString(error.message());
    } else {
        m_document[QStringLiteral("writtenAfterSeconds")] =
            std::chrono::duration<double>(*m_begun - m_start).count();
        if (m_isPartial)
            m_document[QStringLiteral("partial")] = true;
    }
}

} // namespace cli
