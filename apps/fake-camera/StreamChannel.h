// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "fake-camera/CameraRegisters.h"
#include "fake-camera/StreamPackets.h"
#include "platform/UdpSocket.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

namespace fakecamera {

/// Frame numbers, and packets that are dropped.
struct StreamOptions {
    /// 64-bit frame numbers instead of 16-bit ones.
    bool extendedIds = false;
    /// Parts of a frame (multi-part payload), at most 4; 0: an image without parts.
    std::uint32_t parts = 0;
    /// Number of an acquisition's first frame; 16-bit numbers go on with 1 after 65535.
    std::uint64_t firstFrameId = 1;
    /// Drops each n-th data packet, which is sent when the host requests it. 0: none.
    std::uint64_t dropEvery = 0;
    /// Leaves out a frame number after each n frames. 0: none.
    std::uint64_t skipEvery = 0;
    /// Percent of all packets, resent ones included, that are lost at random.
    std::uint32_t lossPercent = 0;
};

/// Sends a camera's frames on a thread of its own while the registers say that it acquires.
/// Packets, resent ones included, leave at the pace of the camera's throughput limit (image bytes
/// per second): a token bucket of 2 ms holds the limit on the wire, too. Thread-safe.
class StreamChannel {
public:
    /// Throws std::system_error when \p address is not one of this computer.
    StreamChannel(CameraRegisters& registers, std::uint32_t address, const StreamOptions& options);
    ~StreamChannel();
    StreamChannel(const StreamChannel&) = delete;
    StreamChannel& operator=(const StreamChannel&) = delete;

    /// Call after registers have changed.
    void update();
    /// Sends packets of a recent frame again, or a packet with the status "unavailable".
    void resend(std::uint64_t frameId, std::uint32_t firstPacket, std::uint32_t lastPacket);
    /// Sends a packet of the set size, so that a host can test whether that size arrives.
    void sendTestPacket(bool mayFragment);

private:
    using Clock = std::chrono::steady_clock;
    struct PacketRange {
        std::uint64_t frameId;
        std::uint32_t first;
        std::uint32_t last;
    };

    void run();
    /// Waits for an acquisition to start; false when the channel ends.
    bool waitForAcquisition();
    void acquire();
    std::uint64_t following(std::uint64_t frameId) const;
    /// Waits until a frame is due or a trigger came; false when the acquisition ends.
    bool waitForTurn(Clock::time_point& due);
    /// Sends a frame's packets at the camera's pace; false when the acquisition ends before.
    bool sendFrame();
    /// Sends or drops the packets before \p end.
    void sendGroup(std::uint32_t end);
    /// Waits for a moment and meanwhile resends what hosts ask for; false when the acquisition ends
    /// before.
    bool waitUntil(Clock::time_point moment);
    /// Resends what hosts ask for, at the camera's pace, until the acquisition changes.
    void sendAllAgain(std::unique_lock<std::mutex>& lock);
    /// Resends the first packets of \p range and removes them from it. False when none is left, or
    /// none of the rest is available.
    bool sendAgain(PacketRange& range);
    /// Bytes that leave as one group.
    std::size_t bytesAtOnce() const;
    /// Takes tokens out of the bucket. Returns the time from which it holds enough of them.
    Clock::time_point takeTokens(std::size_t bytes);
    bool isDropped();
    bool takeTrigger();

    CameraRegisters& m_registers;
    const std::uint32_t m_address;
    const StreamOptions m_options;
    platform::UdpSocket m_socket;
    /// Packets of the last acquisition; hosts may request them again after its end.
    std::optional<StreamPackets> m_packets;
    /// When the token bucket was empty: it holds one token per byte that could have been sent
    /// since.
    Clock::time_point m_tokensSince;
    std::uint64_t m_dataPackets = 0;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    /// Guarded by m_mutex, like the next three.
    bool m_ending = false;
    /// Number of the requested acquisition; 0: none. Each start has a new number.
    std::uint64_t m_asked = 0;
    std::uint64_t m_started = 0;
    std::deque<PacketRange> m_resends;

    /// The acquisition that the thread serves.
    std::uint64_t m_current = 0;
    std::thread m_thread;
};

} // namespace fakecamera
