// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "observer/CaptureFile.h"

#include <QJsonObject>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <optional>
#include <system_error>
#include <vector>

namespace cli {

/// Writes the packets of the last minute to a file after frames were lost: at once, but not more
/// often than its packets change altogether, and once more at the end. Bound to one thread.
class LossCapture {
public:
    using Packets = std::function<std::vector<observer::CapturedAdapter>()>;

    /// Throws a Failure when \p file cannot be written. \p packets gives what is to be written.
    LossCapture(const QString& file, Packets packets);

    /// So many frames were lost or incomplete until now. The packets after \p recordedSince, since
    /// 1970, are still known.
    void note(std::uint64_t losses, std::chrono::nanoseconds recordedSince);
    /// Writes what was lost since the last time, and waits for it.
    void finish();
    /// What was written: "file", and "writtenAfterSeconds" or "error". Empty before that.
    QJsonObject document() const { return m_document; }

private:
    using Clock = std::chrono::steady_clock;

    void begin();
    /// Takes the result of what was begun.
    void end();

    const QString m_file;
    const Packets m_packets;
    const Clock::time_point m_start = Clock::now();
    std::uint64_t m_losses = 0;
    /// When note() was called last, since 1970.
    std::chrono::nanoseconds m_noted;
    bool m_hasNewLosses = false;
    /// The new ones were after this time.
    std::chrono::nanoseconds m_lossesSince{0};
    std::optional<Clock::time_point> m_begun;
    std::future<std::error_code> m_writing;
    QJsonObject m_document;
};

} // namespace cli
