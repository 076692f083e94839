// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/PacketSource.h"

#include <chrono>
#include <memory>
#include <optional>
#include <thread>

namespace orv::aravis {

/// Takes the packets of one stream. All functions are called on the receiver's thread.
class PacketConsumer {
public:
    PacketConsumer() = default;
    virtual ~PacketConsumer() = default;
    PacketConsumer(const PacketConsumer&) = delete;
    PacketConsumer& operator=(const PacketConsumer&) = delete;

    virtual void packet(const gvsp::StreamDatagram& datagram) = 0;
    /// All packets at hand have been handed over, or due() has passed.
    virtual void caughtUp() = 0;
    /// When caughtUp() is to be called again without packets; empty: only after packets. Asked
    /// after add() and after each caughtUp(). The call at that time must move it on.
    virtual std::optional<std::chrono::steady_clock::time_point> due() const = 0;
};

/// Hands the packets of a source to the streams that they belong to, on a thread of its own.
/// Streams come and go while others go on. Thread-safe; all functions may be called by consumers.
class StreamReceiver {
public:
    explicit StreamReceiver(std::unique_ptr<gvsp::PacketSource> source);
    /// No call to a consumer begins any more. Waits for a running call, unless called by it.
    ~StreamReceiver();
    StreamReceiver(const StreamReceiver&) = delete;
    StreamReceiver& operator=(const StreamReceiver&) = delete;

    /// Every packet that arrives after add() has returned is handed over. One consumer per camera
    /// and port: of several, the first gets the packets.
    void add(const gvsp::StreamEndpoint& endpoint, std::shared_ptr<PacketConsumer> consumer);
    /// After this has returned, no call to \p consumer begins; one that runs may still go on. The
    /// receiver's thread may be the one that releases the consumer, soon after.
    void remove(const PacketConsumer& consumer);
    gvsp::SourceCounts counts() const;
    /// Longest time from the arrival of a packet until its consumer gets it, on a host that is not
    /// busy.
    std::chrono::milliseconds latency() const;

private:
    struct Stream;
    struct State;
    class Dispatcher;

    static void run(State& state);

    const std::shared_ptr<State> m_state;
    std::thread m_thread;
};

} // namespace orv::aravis
