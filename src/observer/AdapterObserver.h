// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/PacketSource.h"
#include "observer/CameraDirectory.h"
#include "observer/ObservedStream.h"
#include "observer/PacketRecord.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace observer {

/// One stream at one moment.
struct StreamReading {
    /// IPv4 addresses in host byte order, and the port to which the camera sends.
    std::uint32_t camera = 0;
    std::uint32_t host = 0;
    std::uint16_t port = 0;
    CameraName name;
    StreamFigures figures;
    /// Those of them that another port of the camera brought, before this one.
    StreamFigures before;
    /// Those of them that the reading before had, under whichever port.
    StreamFigures known;
    /// Of the frames since the reading before, and of all since the stream was found, with those of
    /// ports before this one.
    FrameTiming timing;
    FrameTiming allTiming;
    /// Since the last packet.
    std::chrono::duration<double> silence{0};
};

/// IP fragments of UDP datagrams without the first of each, which counts as the whole packet of a
/// stream. The others do not tell their port.
struct FragmentCounts {
    std::uint64_t packets = 0;
    /// Without IP headers.
    std::uint64_t bytes = 0;
};

/// All that was seen on an adapter.
struct AdapterReading {
    /// Packets that arrived after this still wait in the ring, and are not counted yet.
    ObservedStream::Time until{};
    /// Sorted by camera, host and port.
    std::vector<StreamReading> streams;
    /// Packets that the observer itself has missed, and when its adapter was removed.
    gvsp::SourceCounts missed;
    FragmentCounts fragments;
};

/// Finds the streams that an adapter receives by their leaders, and follows them. Sends nothing.
/// receive() is called on one thread; read() on any.
class AdapterObserver {
public:
    using Time = ObservedStream::Time;

    /// On the packet ring of an adapter, see gvsp::AdapterRing; null where the system refuses it.
    /// What is seen is kept in \p record, if there is one.
    static std::unique_ptr<AdapterObserver> open(const std::string& adapter,
                                                 std::unique_ptr<PacketRecord> record = nullptr);
    explicit AdapterObserver(std::unique_ptr<gvsp::PacketSource> source,
                             std::unique_ptr<PacketRecord> record = nullptr);

    /// Waits up to \p wait for packets and takes those that are there.
    void receive(std::chrono::microseconds wait);
    /// Ends a receive() that waits. Any thread.
    void wake() { m_source->wake(); }
    AdapterReading read();
    /// Packets of streams, their fragments, and answers of cameras to control commands; none
    /// without a record. Any thread.
    PacketRecord::Parts recorded();
    /// See PacketRecord::completeSince(). Any thread.
    std::chrono::nanoseconds recordedSince();
    /// Counts the packets of all streams that arrive between these two calls, to be compared with
    /// what the adapter has counted. Any thread.
    void startCount();
    void endCount();
    /// To be asked when all packets before endCount() have been taken, which are soon there: after
    /// latency(). Nothing if a stream was found since startCount(): its first packets were not
    /// seen.
    std::optional<std::uint64_t> counted();
    std::chrono::milliseconds latency() const { return m_source->latency(); }

private:
    /// Camera, host, port.
    using Key = std::tuple<std::uint32_t, std::uint32_t, std::uint16_t>;

    struct Entry {
        ObservedStream stream;
        /// When the stream was found.
        Time found;
        bool isProven = false;
        /// Of streams of the same camera to other ports, which have ended.
        StreamFigures before;
        /// What the last reading had, with that of these.
        StreamFigures known;
        /// That is not read yet, of these; and all that was read.
        FrameTiming timingBefore;
        FrameTiming allTiming;
    };

    void take(const gvsp::StreamDatagram& datagram);
    void record(const gvsp::StreamDatagram& datagram);
    void takeUnknown(const Key& key, const gvsp::StreamDatagram& datagram, Time arrival);
    /// Begins a round: relates the kernel's clock to ours, and notes what was missed.
    void beginRound();
    void finishRound();
    void noteProven();
    /// Continues the figures of streams of the same camera that have ended.
    void takeOver(const Key& key, Entry& entry);
    /// Removes streams that have not shown the size of a frame in time.
    void forgetUnproven(Time now);
    /// Makes room for a new stream; false where all go on.
    bool forgetSilent(Time now);
    void listen();

    const std::unique_ptr<gvsp::PacketSource> m_source;
    std::mutex m_mutex;
    /// All below guarded by the mutex.
    std::map<Key, Entry> m_streams;
    CameraDirectory m_directory;
    gvsp::SourceCounts m_missed;
    /// See ObservedStream::noteMissed().
    Time m_blindUntil{};
    FragmentCounts m_fragments;
    const std::unique_ptr<PacketRecord> m_record;
    /// The stream of the packet before: most packets follow one of the same stream.
    Key m_lastKey{};
    Entry* m_last = nullptr;
    /// Difference of the steady clock to the kernel's in this round.
    std::chrono::nanoseconds m_clockOffset{0};
    /// Arrival of the newest packet of all and of this round.
    Time m_newest{};
    std::optional<Time> m_newestOfRound;
    Time m_now{};
    Time m_nextListen{};
    bool m_hasNewEndpoints = false;
    Time m_countBegin = Time::max();
    Time m_countEnd = Time::max();
    std::uint64_t m_counted = 0;
    bool m_hasNewStream = false;
};

} // namespace observer
