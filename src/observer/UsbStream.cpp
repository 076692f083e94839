// SPDX-License-Identifier: BSD-3-Clause
#include "observer/UsbStream.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace observer {

namespace {

// Leader and trailer of USB3 Vision: all numbers are little endian. Both have a magic number, 2
// reserved bytes, their size (2 bytes) and the frame's number (8 bytes). In a trailer follow the
// status, 2 reserved bytes, and the size of the valid payload (8 bytes).
constexpr std::uint32_t leaderMagic = 0x4C563355;  // "U3VL"
constexpr std::uint32_t trailerMagic = 0x54563355; // "U3VT"
constexpr std::size_t sizeOffset = 6;
constexpr std::size_t blockOffset = 8;
constexpr std::size_t statusOffset = 16;
constexpr std::size_t payloadOffset = 20;
/// With the payload's type.
constexpr std::size_t leaderSize = 20;

/// Frames that may be lost at once, whatever the time.
constexpr std::int64_t burstOfBlocks = 1024;
/// No camera sends frames faster. A larger step of their numbers than there was time for is another
/// acquisition.
constexpr std::chrono::microseconds shortestInterval{100};
/// The receiving program has stopped when it took requests back and no frame came for this long.
constexpr std::chrono::milliseconds shortestStop{500};

std::uint64_t number(const UsbTransfer& transfer, std::size_t offset, std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t i = size; i-- > 0;)
        value = value << 8U | transfer.data[offset + i];
    return value;
}

/// Whether the transfer is as a leader or trailer of at least this size.
bool hasMagic(const UsbTransfer& transfer, std::uint32_t magic, std::size_t size) {
    if (transfer.captured < size || number(transfer, 0, sizeof magic) != magic)
        return false;
    const std::uint64_t told = number(transfer, sizeOffset, 2);
    return told >= size && told <= transfer.size;
}

/// Whether the bytes are what the device sent. A program that expects more gets EREMOTEIO where it
/// asked for that.
bool isSound(const UsbTransfer& transfer) {
    return transfer.size > 0 && (transfer.status == 0 || transfer.status == -EREMOTEIO);
}

bool isCancelled(const UsbTransfer& transfer) {
    return transfer.status == -ENOENT || transfer.status == -ECONNRESET;
}

/// Frames from \p previous to \p next, which came \p elapsed later; nothing where these are of two
/// acquisitions: most cameras count from 0 in each.
std::optional<std::uint64_t> stepBetween(std::uint64_t previous, std::uint64_t next,
                                         UsbStream::Time elapsed) {
    const std::int64_t possible = std::max(burstOfBlocks, elapsed / shortestInterval);
    if (next <= previous || next - previous > static_cast<std::uint64_t>(possible))
        return std::nullopt;
    return next - previous;
}

} // namespace

bool UsbStream::isLeader(const UsbTransfer& transfer) {
    return isSound(transfer) && hasMagic(transfer, leaderMagic, leaderSize);
}

std::optional<UsbStream::Trailer> UsbStream::readTrailer(const UsbTransfer& transfer) {
    if (!hasMagic(transfer, trailerMagic, headerSize))
        return std::nullopt;
    return Trailer{number(transfer, blockOffset, 8),
                   static_cast<std::uint16_t>(number(transfer, statusOffset, 2)),
                   number(transfer, payloadOffset, 8)};
}

void UsbStream::take(const UsbTransfer& transfer) {
    if (m_frame && isCancelled(transfer))
        m_frame->hasCancelled = true;
    if (!isSound(transfer))
        return;
    const Time now = m_latest = transfer.arrival;
    ++m_figures.packets;
    if (m_frame) {
        m_frame->largestGap = std::max(m_frame->largestGap, now - m_frame->last);
        m_frame->last = now;
    }
    if (isLeader(transfer)) {
        begin(number(transfer, blockOffset, 8), now);
    } else if (const auto trailer = readTrailer(transfer)) {
        end(*trailer, now);
    } else {
        m_figures.dataBytes += transfer.size;
        if (m_frame)
            m_frame->bytes += transfer.size;
    }
}

void UsbStream::begin(std::uint64_t block, Time now) {
    if (m_frame)
        giveUp(block, now);
    judgeGap(block, now);
    m_frame = Frame{block, now, now, Time::zero(), 0, false};
    m_previous = block;
}

void UsbStream::end(const Trailer& trailer, Time now) {
    if (!m_frame || m_frame->block != trailer.block) {
        endUnbegun(trailer.block, now);
        return;
    }
    m_isKnown = true;
    // Behind the valid payload, a camera may fill up the last transfer.
    if (trailer.status == 0 && m_frame->bytes >= trailer.payload)
        ++m_figures.framesComplete;
    else
        countBad(wasBlind(m_frame->begin, now));
    time(*m_frame, now);
    m_frame.reset();
    m_previousEnd = now;
}

void UsbStream::endUnbegun(std::uint64_t block, Time now) {
    if (m_frame)
        giveUp(block, now);
    // The frame is known already, or nothing is: what was before the first leader does not count.
    if (!m_previous || m_previous == block)
        return;
    judgeGap(block, now);
    countBad(wasBlind(m_previousEnd, now));
    m_previous = block;
    m_previousEnd = now;
}

void UsbStream::giveUp(std::uint64_t next, Time now) {
    const Frame frame = *std::exchange(m_frame, std::nullopt);
    const bool isStopped = !stepBetween(frame.block, next, now - frame.begin) ||
                           (frame.hasCancelled && frame.largestGap >= shortestStop);
    countBad(isStopped || wasBlind(frame.begin, now));
    m_previousEnd = frame.begin;
}

void UsbStream::judgeGap(std::uint64_t block, Time now) {
    const auto step =
        m_previous ? stepBetween(*m_previous, block, now - m_previousEnd) : std::nullopt;
    if (!step || *step == 1)
        return;
    ++m_figures.gaps;
    (wasBlind(m_previousEnd, now) ? m_figures.framesUnjudged : m_figures.framesLost) += *step - 1;
}

void UsbStream::countBad(bool isUnjudged) {
    ++(isUnjudged ? m_figures.framesUnjudged : m_figures.framesIncomplete);
}

void UsbStream::time(const Frame& frame, Time end) {
    const Time duration = end - frame.begin;
    if (duration.count() <= 0)
        return;
    const double seconds = std::chrono::duration<double>(duration).count();
    m_timing.add(
        {1, duration, duration, frame.largestGap, static_cast<double>(frame.bytes) / seconds});
}

void UsbStream::noteMissed(Time since, Time until) {
    // One time that holds both while frames of the one before are not all judged. The system's
    // clock may have been set back.
    const bool holdsBoth = m_blindUntil >= m_previousEnd && m_blindUntil <= until;
    m_blindSince = holdsBoth ? std::min(m_blindSince, since) : std::min(since, until);
    m_blindUntil = until;
}

bool UsbStream::wasBlind(Time since, Time until) const {
    return std::min(since, until) <= m_blindUntil && std::max(since, until) >= m_blindSince;
}

FrameTiming UsbStream::takeTiming() {
    return std::exchange(m_timing, {});
}

} // namespace observer
