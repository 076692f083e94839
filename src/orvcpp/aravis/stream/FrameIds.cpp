// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/FrameIds.h"

#include "gvsp/BlockNumbers.h"

namespace orv::aravis {

namespace {

/// An incomplete frame that leaves a larger gap than this carries a stale number.
constexpr std::uint64_t largestGap = 1024;

} // namespace

std::optional<std::uint64_t> FrameIds::extend(std::uint64_t id, bool isComplete) {
    const std::uint64_t step = m_last ? id - *m_last : 0;
    const bool isPlausible = m_last ? step >= 1 && step <= largestGap : id <= gvsp::largestFirstId;
    if (!isComplete && !isPlausible)
        return std::nullopt;
    if (m_last)
        m_number += step;
    else if (id <= gvsp::largestFirstId && (!m_previous || id <= *m_previous))
        m_number = id;
    m_last = id;
    return m_number;
}

} // namespace orv::aravis
