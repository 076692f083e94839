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
    /// Nanoseconds since 1970.
    using Time = std::function<std::chrono::nanoseconds()>;

    /// A lost frame is noticed when a later one comes: of a camera that sends one frame in two
    /// seconds this long after its packets, with the latency of the observer and an interval.
    static constexpr std::chrono::seconds longestJudgement{3};

    /// Throws a Failure when \p file cannot be written. \p packets gives what is to be written.
    /// \p time is the system's clock unless another one is given.
    LossCapture(const QString& file, Packets packets, Time time = systemTime);

    /// So many frames were lost or incomplete until now. The packets after \p recordedSince, since
    /// 1970, are still known.
    void note(std::uint64_t losses, std::chrono::nanoseconds recordedSince);
    /// Writes what was lost since the last time, and waits for it.
    void finish();
    /// What was written: "file", and "writtenAfterSeconds" or "error"; "partial" where packets
    /// since the losses may have been forgotten before. Empty before that.
    QJsonObject document() const { return m_document; }

private:
    using Clock = std::chrono::steady_clock;

    static std::chrono::nanoseconds systemTime();

    void begin();
    /// Takes the result of what was begun.
    void end();

    const QString m_file;
    const Packets m_packets;
    const Time m_time;
    const Clock::time_point m_start = Clock::now();
    std::uint64_t m_losses = 0;
    /// When note() was called last, since 1970.
    std::chrono::nanoseconds m_noted;
    bool m_hasNewLosses = false;
    /// Packets of the new ones, and of those that are being written, were after this time.
    std::chrono::nanoseconds m_lossesSince{0};
    std::chrono::nanoseconds m_writtenSince{0};
    /// What note() was told last.
    std::chrono::nanoseconds m_recordedSince{0};
    /// Of what is being written.
    bool m_isPartial = false;
    std::optional<Clock::time_point> m_begun;
    std::future<std::error_code> m_writing;
    QJsonObject m_document;
};

} // namespace cli
