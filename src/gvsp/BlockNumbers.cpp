// SPDX-License-Identifier: BSD-3-Clause
#include "gvsp/BlockNumbers.h"

#include <algorithm>

namespace gvsp {

namespace {

/// IDs of 16 bits without 0.
constexpr std::int64_t cycle = 0xFFFF;
/// Blocks that may be lost at once, whatever the time: a switch drops a burst.
constexpr std::int64_t burst = 1024;
/// No camera sends blocks faster. A larger step in the time since the newest block is not a loss.
constexpr std::chrono::microseconds shortestInterval{10};
/// After this silence, any leader is taken for the camera's newest.
constexpr std::chrono::seconds silence{1};

/// From one ID to another, the shorter way round for IDs of 16 bits.
std::int64_t stepBetween(std::uint64_t from, std::uint64_t to, bool hasExtendedIds) {
    const auto step = static_cast<std::int64_t>(to - from);
    if (hasExtendedIds)
        return step;
    if (step < -cycle / 2)
        return step + cycle;
    return step > cycle / 2 ? step - cycle : step;
}

} // namespace

std::optional<BlockNumbers::Place> BlockNumbers::place(std::uint64_t id, bool hasExtendedIds,
                                                       std::optional<std::uint64_t> timestamp,
                                                       Time now) const {
    if (!m_newestId)
        return Place{first(id), false};
    const std::int64_t step = stepBetween(*m_newestId, id, hasExtendedIds);
    // A small ID after a large one: a camera that begins anew, unless its IDs were about to wrap.
    if (timestamp && !hasExtendedIds && id <= largestFirstId && id < *m_newestId && step > burst)
        return Place{m_newest + 1, true};
    const std::int64_t possible = std::max<std::int64_t>(
        burst, (now - m_newestTime) / std::chrono::nanoseconds(shortestInterval));
    const auto sinceEnded = static_cast<std::int64_t>(m_newest - m_lastEnded);
    if (step != 0 && step <= possible && step > -sinceEnded)
        return Place{m_newest + static_cast<std::uint64_t>(step), false};
    if (timestamp && mayBeRestart(step, *timestamp, now))
        return Place{m_newest + 1, true};
    return std::nullopt;
}

std::uint64_t BlockNumbers::first(std::uint64_t id) const {
    const bool goesOn = m_previous && id > *m_previous;
    return id <= largestFirstId && !goesOn ? id : 1;
}

/// A leader of a known block that comes late or twice is not newer than the newest one; one of a
/// block after that, whose own leader has not come, may be.
bool BlockNumbers::mayBeRestart(std::int64_t step, std::uint64_t timestamp, Time now) const {
    const auto withoutLeader = static_cast<std::int64_t>(m_newest - m_withTimestamp);
    const bool isAwaited = step <= 0 && step > -withoutLeader;
    if (now - m_newestTime > silence || (timestamp > m_newestTimestamp && !isAwaited))
        return true;
    const bool hasClock = timestamp != 0 || m_newestTimestamp != 0;
    return !hasClock && (step > burst || step < -burst);
}

void BlockNumbers::open(std::uint64_t id, const Place& place, Time now) {
    if (place.number <= m_newest)
        return;
    m_newestId = id;
    m_newest = place.number;
    m_newestTime = now;
    if (place.isRestart)
        m_newestTimestamp = 0;
}

void BlockNumbers::noteTimestamp(std::uint64_t timestamp) {
    m_newestTimestamp = std::max(m_newestTimestamp, timestamp);
    m_withTimestamp = m_newest;
}

} // namespace gvsp
