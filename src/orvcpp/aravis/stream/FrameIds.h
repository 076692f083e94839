// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <optional>

namespace orv::aravis {

/// Turns the numbers that a camera puts on its frames into numbers that grow without end from a
/// first one. Older GigE cameras count with 16 bits and leave out 0, others with 64 bits. A camera
/// counts anew with every acquisition; one that does not is taken to begin with the first frame
/// that comes. Of one thread.
class FrameIds {
public:
    /// \p first is the number of an acquisition's first frame: 1 for GigE Vision, 0 for USB3
    /// Vision. \p previous is the camera's number of the last frame before, where it is known.
    FrameIds(std::uint64_t first, std::optional<std::uint64_t> previous)
        : m_first(first), m_previous(previous) {}

    /// Number of a frame that the camera has numbered \p id; nothing when that cannot be trusted:
    /// an incomplete frame may still carry the number of the one that was in its buffer before.
    std::optional<std::uint64_t> extend(std::uint64_t id, bool isComplete);
    /// What the camera numbered its last frame.
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
