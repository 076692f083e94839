// SPDX-License-Identifier: BSD-3-Clause
#include "observer/AdapterObserver.h"

#include "gige/BootstrapRegisters.h"
#include "gvsp/PacketRing.h"
#include "gvsp/StreamFilter.h"

#include <algorithm>
#include <utility>

namespace observer {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Streams of an adapter; more are not followed, so that made-up leaders do not fill the memory.
constexpr std::size_t mostStreams = 256;
/// A stream that shows no whole frame for this long after it was found is forgotten: its leader was
/// none, or it has ended.
constexpr auto longestProof = 5min;
/// An acquisition that begins anew on another port continues the camera's figures when the old port
/// has been silent for this long.
constexpr auto silenceOfEnded = 2s;
/// Frames whose packets may be among those that were missed.
constexpr auto affectedByMiss = 1s;
/// The kernel takes a new filter in milliseconds, so not for each new stream.
constexpr auto betweenFilters = 50ms;

} // namespace

std::unique_ptr<AdapterObserver> AdapterObserver::open(const std::string& adapter) {
    auto ring = gvsp::PacketRing::open(adapter, gvsp::PacketRing::observing);
    return ring ? std::make_unique<AdapterObserver>(std::move(ring)) : nullptr;
}

AdapterObserver::AdapterObserver(std::unique_ptr<gvsp::PacketSource> source)
    : m_source(std::move(source)) {
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
    m_now = Clock::now();
    m_clockOffset = m_now.time_since_epoch() - std::chrono::system_clock::now().time_since_epoch();
    const gvsp::SourceCounts missed = m_source->counts();
    if (missed.dropped != m_missed.dropped) {
        for (auto& [key, entry] : m_streams)
            entry.stream.noteMissed(m_now + affectedByMiss);
    }
    m_missed = missed;
}

void AdapterObserver::take(const gvsp::StreamDatagram& datagram) {
    // Of a clock that was set meanwhile, times are wrong, but never in the future.
    const Time arrival = std::min(
        m_now, Time(std::chrono::duration_cast<Time::duration>(datagram.arrival + m_clockOffset)));
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
    if (arrival > m_countBegin && arrival <= m_countEnd)
        ++m_counted;
}

void AdapterObserver::takeUnknown(const Key& key, const gvsp::StreamDatagram& datagram,
                                  Time arrival) {
    if (datagram.senderPort == gige::controlPort) {
        m_directory.note(datagram);
        return;
    }
    if (!gvsp::mayBeLeader(datagram) || m_streams.size() >= mostStreams)
        return;
    const StreamFigures before = takeOverFrom(key, arrival);
    Entry& entry = m_streams[key];
    entry.found = arrival;
    entry.before = before;
    entry.stream.packet(datagram, arrival);
    m_hasNewEndpoints = true;
    m_hasNewStream = true;
}

StreamFigures AdapterObserver::takeOverFrom(const Key& key, Time now) {
    const auto isEnded = [&](const auto& known) {
        return std::get<0>(known.first) == std::get<0>(key) &&
               std::get<1>(known.first) == std::get<1>(key) &&
               now - known.second.stream.latest() > silenceOfEnded;
    };
    const auto ended = std::find_if(m_streams.begin(), m_streams.end(), isEnded);
    if (ended == m_streams.end())
        return {};
    StreamFigures figures = ended->second.before;
    figures.add(ended->second.stream.figures());
    m_streams.erase(ended);
    m_last = nullptr;
    return figures;
}

void AdapterObserver::forgetUnproven(Time now) {
    for (auto each = m_streams.begin(); each != m_streams.end();) {
        if (!each->second.stream.isKnown() && now - each->second.found > longestProof) {
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
    // Packets that wait in the ring may be as old as its latency.
    const Time read = m_now - m_source->latency();
    for (auto& [key, entry] : m_streams)
        entry.stream.advance(read);
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
    const Time now = Clock::now();
    for (auto& [key, entry] : m_streams) {
        if (!entry.stream.isKnown())
            continue;
        StreamReading stream;
        std::tie(stream.camera, stream.host, stream.port) = key;
        stream.name = m_directory.nameOf(stream.camera);
        stream.figures = entry.before;
        stream.figures.add(entry.stream.figures());
        stream.timing = entry.stream.takeTiming();
        stream.silence = std::max<Time::duration>(now - entry.stream.latest(), 0s);
        reading.streams.push_back(std::move(stream));
    }
    return reading;
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
