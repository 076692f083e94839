// SPDX-License-Identifier: BSD-3-Clause
#include "observer/AdapterObserver.h"

#include "gige/BootstrapRegisters.h"
#include "gvsp/AdapterRing.h"
#include "gvsp/StreamFilter.h"

#include <algorithm>
#include <utility>

namespace observer {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Streams of an adapter; more are not followed, so that made-up leaders do not fill the memory.
constexpr std::size_t mostStreams = 256;
/// A stream that does not show the size of a frame for this long after it was found is forgotten:
/// its leader was none, or it has ended.
constexpr auto longestProof = 5min;
/// Where there are too many, a stream that was silent for this long makes room.
constexpr auto shortestSilence = 10s;
/// Longest time in which both clocks are read as one.
constexpr auto longestReading = 100us;
/// An acquisition that begins anew on another port continues the camera's figures when the old port
/// has been silent for this long.
constexpr auto silenceOfEnded = 2s;
/// Frames whose packets may be among those that were missed.
constexpr auto affectedByMiss = 1s;
/// The kernel takes a new filter in milliseconds, so not for each new stream.
constexpr auto betweenFilters = 50ms;

} // namespace

std::unique_ptr<AdapterObserver> AdapterObserver::open(const std::string& adapter,
                                                       std::unique_ptr<PacketRecord> record) {
    auto ring = gvsp::AdapterRing::open(adapter, gvsp::PacketRing::observing);
    return ring ? std::make_unique<AdapterObserver>(std::move(ring), std::move(record)) : nullptr;
}

AdapterObserver::AdapterObserver(std::unique_ptr<gvsp::PacketSource> source,
                                 std::unique_ptr<PacketRecord> record)
    : m_source(std::move(source)), m_record(std::move(record)) {
    m_source->listen({});
}

void AdapterObserver::receive(std::chrono::microseconds wait) {
    std::unique_lock lock(m_mutex, std::defer_lock);
    m_source->receive(wait, [this, &lock](const gvsp::StreamDatagram& datagram) {
        if (!lock.owns_lock()) {
            lock.lock();
            beginRound();
        }
        take(datagram);
    });
    if (!lock.owns_lock()) {
        lock.lock();
        beginRound();
    }
    finishRound();
}

void AdapterObserver::beginRound() {
    // Read again when this thread was interrupted in between.
    std::chrono::nanoseconds system{0};
    Time before;
    for (int i = 0; i < 5; ++i) {
        before = Clock::now();
        system = std::chrono::system_clock::now().time_since_epoch();
        m_now = Clock::now();
        if (m_now - before < longestReading)
            break;
    }
    m_clockOffset = before.time_since_epoch() - system;
    m_newestOfRound.reset();
    const gvsp::SourceCounts missed = m_source->counts();
    if (missed.dropped != m_missed.dropped || missed.returns != m_missed.returns) {
        m_blindUntil = m_now + affectedByMiss;
        for (auto& [key, entry] : m_streams)
            entry.stream.noteMissed(m_blindUntil);
    }
    m_missed = missed;
}

void AdapterObserver::take(const gvsp::StreamDatagram& datagram) {
    // Packets come in the order of time, even where the kernel's clock was set meanwhile.
    const Time told(std::chrono::duration_cast<Time::duration>(datagram.arrival + m_clockOffset));
    const Time arrival = std::clamp(told, std::min(m_newest, m_now), m_now);
    m_newest = arrival;
    m_newestOfRound = arrival;
    const bool isCounted = arrival > m_countBegin && arrival <= m_countEnd;
    if (datagram.fragment == gige::Fragment::Later) {
        ++m_fragments.packets;
        m_fragments.bytes += datagram.size;
        m_counted += isCounted ? 1 : 0;
        record(datagram);
        return;
    }
    const Key key(datagram.sender, datagram.destination, datagram.port);
    if (m_last == nullptr || key != m_lastKey) {
        const auto known = m_streams.find(key);
        if (known == m_streams.end()) {
            takeUnknown(key, datagram, arrival);
            return;
        }
        m_last = &known->second;
        m_lastKey = key;
    }
    m_last->stream.packet(datagram, arrival);
    m_counted += isCounted ? 1 : 0;
    record(datagram);
}

void AdapterObserver::record(const gvsp::StreamDatagram& datagram) {
    if (m_record)
        m_record->add(datagram);
}

void AdapterObserver::takeUnknown(const Key& key, const gvsp::StreamDatagram& datagram,
                                  Time arrival) {
    if (datagram.senderPort == gige::controlPort) {
        m_directory.note(datagram);
        record(datagram);
        return;
    }
    const auto packet = gvsp::mayBeLeader(datagram)
                            ? gvsp::readPacket(datagram.data, datagram.captured, datagram.size)
                            : std::nullopt;
    if (!packet || !gvsp::readLeader(*packet))
        return;
    if (m_streams.size() >= mostStreams && !forgetSilent(arrival))
        return;
    Entry& entry = m_streams[key];
    entry.found = arrival;
    entry.stream.noteMissed(m_blindUntil);
    entry.stream.packet(datagram, arrival);
    record(datagram);
    m_hasNewEndpoints = true;
}

bool AdapterObserver::forgetSilent(Time now) {
    const auto oldest =
        std::min_element(m_streams.begin(), m_streams.end(), [](const auto& a, const auto& b) {
            return a.second.stream.latest() < b.second.stream.latest();
        });
    if (now - oldest->second.stream.latest() < shortestSilence)
        return false;
    m_streams.erase(oldest);
    m_last = nullptr;
    return true;
}

void AdapterObserver::noteProven() {
    for (auto& [key, entry] : m_streams) {
        if (entry.isProven || !entry.stream.isKnown())
            continue;
        entry.isProven = true;
        m_hasNewStream = true;
        takeOver(key, entry);
    }
}

void AdapterObserver::takeOver(const Key& key, Entry& entry) {
    for (auto each = m_streams.begin(); each != m_streams.end();) {
        const bool isOfSameCamera = std::get<0>(each->first) == std::get<0>(key) &&
                                    std::get<1>(each->first) == std::get<1>(key);
        const ObservedStream& stream = each->second.stream;
        if (!isOfSameCamera || &each->second == &entry || !each->second.isProven ||
            entry.found - stream.latest() < silenceOfEnded) {
            ++each;
            continue;
        }
        entry.before.add(each->second.before);
        entry.before.add(stream.figures());
        entry.known.add(each->second.known);
        entry.allTiming.add(each->second.allTiming);
        entry.timingBefore.add(each->second.timingBefore);
        entry.timingBefore.add(each->second.stream.takeTiming());
        each = m_streams.erase(each);
        m_last = nullptr;
    }
}

void AdapterObserver::forgetUnproven(Time now) {
    for (auto each = m_streams.begin(); each != m_streams.end();) {
        if (!each->second.isProven && now - each->second.found > longestProof) {
            each = m_streams.erase(each);
            m_last = nullptr;
            m_hasNewEndpoints = true;
        } else {
            ++each;
        }
    }
}

void AdapterObserver::finishRound() {
    m_now = Clock::now();
    // Packets that wait in the ring are as old as its latency, or older where it was not read in
    // time.
    const Time due = m_now - m_source->latency();
    const Time read = std::min(due, m_newestOfRound.value_or(due));
    for (auto& [key, entry] : m_streams)
        entry.stream.advance(read);
    noteProven();
    forgetUnproven(m_now);
    if (m_hasNewEndpoints && m_now >= m_nextListen)
        listen();
}

void AdapterObserver::listen() {
    std::vector<gvsp::StreamEndpoint> endpoints;
    for (const auto& [key, entry] : m_streams)
        endpoints.push_back({std::get<0>(key), std::get<1>(key), std::get<2>(key), true});
    m_source->listen(endpoints);
    m_hasNewEndpoints = false;
    m_nextListen = m_now + betweenFilters;
}

AdapterReading AdapterObserver::read() {
    const std::lock_guard lock(m_mutex);
    AdapterReading reading;
    reading.missed = m_missed;
    reading.fragments = m_fragments;
    const Time now = Clock::now();
    reading.until = std::max(m_newest, now - m_source->latency());
    for (auto& [key, entry] : m_streams) {
        if (!entry.isProven)
            continue;
        StreamReading stream;
        std::tie(stream.camera, stream.host, stream.port) = key;
        stream.name = m_directory.nameOf(stream.camera);
        stream.before = stream.figures = entry.before;
        stream.figures.add(entry.stream.figures());
        stream.known = std::exchange(entry.known, stream.figures);
        stream.timing = std::exchange(entry.timingBefore, {});
        stream.timing.add(entry.stream.takeTiming());
        entry.allTiming.add(stream.timing);
        stream.allTiming = entry.allTiming;
        stream.silence = std::max<Time::duration>(now - entry.stream.latest(), 0s);
        reading.streams.push_back(std::move(stream));
    }
    return reading;
}

PacketRecord::Parts AdapterObserver::recorded() {
    const std::lock_guard lock(m_mutex);
    return m_record ? m_record->packets() : PacketRecord::Parts();
}

std::chrono::nanoseconds AdapterObserver::recordedSince() {
    const std::lock_guard lock(m_mutex);
    return m_record ? m_record->completeSince() : std::chrono::nanoseconds(0);
}

void AdapterObserver::startCount() {
    const std::lock_guard lock(m_mutex);
    m_countBegin = Clock::now();
    m_countEnd = Time::max();
    m_counted = 0;
    m_hasNewStream = false;
}

void AdapterObserver::endCount() {
    const std::lock_guard lock(m_mutex);
    m_countEnd = Clock::now();
}

std::optional<std::uint64_t> AdapterObserver::counted() {
    const std::lock_guard lock(m_mutex);
    return m_hasNewStream ? std::nullopt : std::optional(m_counted);
}

} // namespace observer
