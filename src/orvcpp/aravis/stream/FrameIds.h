// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <optional>

namespace orv::aravis {

/// Extends a camera's frame numbers to 64 bits, starting at a given first number. Older GigE
/// cameras count with 16 bits and skip 0, others with 64 bits. Most cameras restart at each
/// acquisition; for others the first frame received gets the first number. Not thread-safe.
class FrameIds {
public:
    /// \p first is the number of an acquisition's first frame: 1 for GigE Vision, 0 for USB3
    /// Vision. \p previous is the camera's number of the last frame before, where it is known.
    FrameIds(std::uint64_t first, std::optional<std::uint64_t> previous)
        : m_first(first), m_previous(previous) {}

    /// The extended number of a frame. Empty when \p id is unreliable: an incomplete frame may
    /// still have the number of the previous frame in its buffer.
    std::optional<std::uint64_t> extend(std::uint64_t id, bool isComplete);
    /// The camera's number of the last frame.
    std::optional<std::uint64_t> lastOfCamera() const { return m_last; }

private:
    std::uint64_t begin(std::uint64_t id) const;
    std::int64_t stepTo(std::uint64_t id) const;

    const std::uint64_t m_first;
    const std::optional<std::uint64_t> m_previous;
    std::optional<std::uint64_t> m_last;
    std::uint64_t m_extended = 0;
};

} // namespace orv::aravis
