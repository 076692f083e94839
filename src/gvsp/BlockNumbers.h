// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace gvsp {

/// An acquisition whose first frame has an ID up to this has lost the frames before it.
constexpr std::uint64_t largestFirstId = 32;

/// Counts the blocks of an acquisition from 1, whatever the camera's own IDs do. IDs of 16 bits
/// skip 0 and wrap; a camera may go on from its previous acquisition, begin anew at any time, or
/// lose its count. The numbers never step back, and a gap in them is a loss. Not thread-safe.
class BlockNumbers {
public:
    using Time = std::chrono::steady_clock::time_point;

    struct Place {
        std::uint64_t number = 0;
        /// The camera counts anew from this block on.
        bool isRestart = false;
    };

    /// \p previous is the camera's last ID of the acquisition before, where it is known.
    explicit BlockNumbers(std::optional<std::uint64_t> previous) : m_previous(previous) {}

    /// Number of a block of which a first packet has come; empty when the packet belongs to an
    /// earlier block or to none. \p timestamp is that of the leader if this is one, and 0 from a
    /// camera without a clock.
    std::optional<Place> place(std::uint64_t id, bool hasExtendedIds,
                               std::optional<std::uint64_t> timestamp, Time now) const;
    /// The block at this place exists. Later places are relative to the newest block.
    void open(std::uint64_t id, const Place& place, Time now);
    /// A leader of the newest block has come.
    void noteTimestamp(std::uint64_t timestamp);
    /// This block and those before it are over.
    void end(std::uint64_t number) { m_lastEnded = number; }

    std::uint64_t lastEnded() const { return m_lastEnded; }
    /// Number of the newest block, 0 before the first.
    std::uint64_t newest() const { return m_newest; }
    /// The camera's ID of the newest block.
    std::optional<std::uint64_t> newestId() const { return m_newestId; }

private:
    std::uint64_t first(std::uint64_t id) const;
    bool mayBeRestart(std::int64_t step, std::uint64_t timestamp, Time now) const;

    const std::optional<std::uint64_t> m_previous;
    std::optional<std::uint64_t> m_newestId;
    std::uint64_t m_newest = 0;
    std::uint64_t m_lastEnded = 0;
    std::uint64_t m_newestTimestamp = 0;
    /// Number of the last block whose leader came while it was the newest.
    std::uint64_t m_withTimestamp = 0;
    Time m_newestTime;
};

} // namespace gvsp
