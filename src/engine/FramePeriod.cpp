// SPDX-License-Identifier: BSD-3-Clause
#include "engine/FramePeriod.h"

#include <algorithm>

FramePeriod::Distance FramePeriod::meanOf(std::size_t begin, std::size_t count) const {
    const auto share = 1 / static_cast<double>(count);
    const Frame& first = m_frames.front();
    Distance mean;
    for (std::size_t i = begin; i < begin + count; ++i) {
        mean.frames += static_cast<double>(m_frames[i].id - first.id) * share;
        mean.seconds +=
            std::chrono::duration<double>(m_frames[i].noticed - first.noticed).count() * share;
    }
    return mean;
}

std::optional<double> FramePeriod::seconds() const {
    if (m_frames.size() < 2)
        return std::nullopt;
    const std::size_t count = std::max<std::size_t>(1, m_frames.size() / 8);
    const Distance begin = meanOf(0, count);
    const Distance end = meanOf(m_frames.size() - count, count);
    return (end.seconds - begin.seconds) / (end.frames - begin.frames);
}
