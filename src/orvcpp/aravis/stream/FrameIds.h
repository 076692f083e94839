// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <optional>

namespace orv::aravis {

/// Counts the frames of a USB3 Vision camera from 0 in each acquisition. Most cameras restart at
/// each acquisition; for others the first frame received gets the first number. Not thread-safe.
class FrameIds {
public:
    /// \p previous is the camera's number of the last frame before, where it is known.
    explicit FrameIds(std::optional<std::uint64_t> previous) : m_previous(previous) {}

    /// The number of a frame. Empty when \p id is unreliable: an incomplete frame may still have
    /// the number of the previous frame in its buffer.
    std::optional<std::uint64_t> extend(std::uint64_t id, bool isComplete);
    /// The camera's number of the last frame.
    std::optional<std::uint64_t> lastOfCamera() const { return m_last; }

private:
    const std::optional<std::uint64_t> m_previous;
    std::optional<std::uint64_t> m_last;
    std::uint64_t m_number = 0;
};

} // namespace orv::aravis
