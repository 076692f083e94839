// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/fakecamera/CameraRegisters.h"
#include "tests/fakecamera/StreamPackets.h"
#include "tests/fakecamera/UdpSocket.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

namespace fakecamera {

/// How a camera's frames are numbered and which of its packets it withholds.
struct StreamOptions {
    /// 64-bit frame numbers instead of 16-bit ones.
    bool extendedIds = false;
    /// Number of an acquisition's first frame; 16-bit numbers go on with 1 after 65535.
    std::uint64_t firstFrameId = 1;
    /// Withholds every so manieth data packet, once: it is sent when asked for again. 0: none.
    std::uint64_t dropEvery = 0;
};

/// Sends a camera's frames, on a thread of its own, as long as the registers say that it acquires.
/// Packets, those that are sent again among them, leave at the pace of the camera's throughput
/// limit (image bytes per second), held by a token bucket of 2 ms, so that a limit limits on the
/// wire what it promises. Thread-safe.
class StreamChannel {
public:
    StreamChannel(CameraRegisters& registers, std::uint32_t address, const StreamOptions& options);
    ~StreamChannel();
    StreamChannel(const StreamChannel&) = delete;
    StreamChannel& operator=(const StreamChannel&) = delete;

    /// To be called after registers have changed.
    void update();
    /// Sends packets of a recent frame again, or one that says that it is none.
    void resend(std::uint64_t frameId, std::uint32_t firstPacket, std::uint32_t lastPacket);
    /// Sends a packet of the size that is set, for a host to see whether it arrives.
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
    /// Waits until a frame is due or a trigger came; false when the acquisition ends.
    bool waitForTurn(Clock::time_point& due);
    /// Sends a frame's packets at the camera's pace; false when the acquisition ends before.
    bool sendFrame();
    /// Lets as many packets have their turn as may leave at once.
    void sendGroup(std::uint32_t end);
    /// Waits for a moment, sending again meanwhile what is asked for; false when the acquisition
    /// ends before.
    bool waitUntil(Clock::time_point moment);
    void sendAllAgain(std::unique_lock<std::mutex>& lock);
    void sendAgain(const PacketRange& range);
    /// Takes tokens out of the bucket, and answers when there have been enough.
    Clock::time_point takeTokens(std::size_t bytes);
    bool isWithheld();
    bool takeTrigger();

    CameraRegisters& m_registers;
    const std::uint32_t m_address;
    const StreamOptions m_options;
    UdpSocket m_socket;
    /// Those of the last acquisition, which can be asked for when it has ended, too.
    std::optional<StreamPackets> m_packets;
    /// When the token bucket was empty: it holds what could have been sent since.
    Clock::time_point m_tokensSince;
    std::uint64_t m_dataPackets = 0;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    /// Guarded by m_mutex, as are the next three.
    bool m_ending = false;
    /// Number of the acquisition that is asked for; 0: none. One that is stopped and started anew
    /// is another.
    std::uint64_t m_asked = 0;
    std::uint64_t m_started = 0;
    std::deque<PacketRange> m_resends;

    /// The acquisition that the thread is at.
    std::uint64_t m_current = 0;
    std::thread m_thread;
};

} // namespace fakecamera
