// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/FrameIds.h"

namespace orv::aravis {

namespace {

/// Numbers of 16 bits without 0.
constexpr std::int64_t cycle = 0xFFFF;
/// An acquisition whose first frame has a number up to this has lost the frames before it.
constexpr std::uint64_t largestFirst = 32;
/// An incomplete frame that leaves a larger gap than this carries a stale number.
constexpr std::int64_t largestGap = 1024;

} // namespace

std::optional<std::uint64_t> FrameIds::extend(std::uint64_t id, bool isComplete) {
    if (!m_last) {
        if (!isComplete && id > largestFirst)
            return std::nullopt;
        m_extended = begin(id);
    } else {
        const std::int64_t step = stepTo(id);
        if (!isComplete && (step < 1 || step > largestGap))
            return std::nullopt;
        m_extended += static_cast<std::uint64_t>(step);
    }
    m_last = id;
    return m_extended;
}

std::uint64_t FrameIds::begin(std::uint64_t id) const {
    const bool goesOn = m_previous && id > *m_previous;
    return id >= m_first && id <= largestFirst && !goesOn ? id : m_first;
}

/// Distance from the last frame, the shorter way round for a number of 16 bits.
std::int64_t FrameIds::stepTo(std::uint64_t id) const {
    const auto step = static_cast<std::int64_t>(id - *m_last);
    if (m_first == 0 || id > static_cast<std::uint64_t>(cycle) ||
        *m_last > static_cast<std::uint64_t>(cycle))
        return step;
    if (step < -cycle / 2)
        return step + cycle;
    return step > cycle / 2 ? step - cycle : step;
}

} // namespace orv::aravis
