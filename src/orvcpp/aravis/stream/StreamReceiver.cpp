// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/StreamReceiver.h"

#include "orvcpp/core/Clock.h"
#include "orvcpp/core/SdkThread.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

namespace orv::aravis {

namespace {

/// Changes wake the thread earlier. A source that cannot be woken ends this late.
constexpr std::chrono::seconds longestWait{10};

/// Sender and port of a packet as one number.
std::uint64_t keyOf(std::uint32_t sender, std::uint16_t port) {
    return std::uint64_t{sender} << 16U | port;
}

} // namespace

/// A consumer and what the thread knows of it.
struct StreamReceiver::Stream {
    Stream(const gvsp::StreamEndpoint& listened, std::shared_ptr<PacketConsumer> taker)
        : endpoint(listened), key(keyOf(listened.camera, listened.port)),
          consumer(std::move(taker)) {}

    const gvsp::StreamEndpoint endpoint;
    const std::uint64_t key;
    const std::shared_ptr<PacketConsumer> consumer;
    /// Set before remove() returns; checked before each call.
    std::atomic<bool> isRemoved{false};
    /// Used by the receiver's thread only.
    bool hasPackets = false;
    std::optional<Clock::time_point> due;
};

/// What the thread and the object share. It lasts as long as both.
struct StreamReceiver::State {
    /// Sorted by key; streams of the same key in the order of add().
    using Streams = std::vector<std::shared_ptr<Stream>>;

    explicit State(std::unique_ptr<gvsp::PacketSource> packets) : source(std::move(packets)) {}
    /// Requires the mutex.
    void listen(const Streams& listening) const;
    /// Replaces the streams. Requires the mutex.
    void publish(std::shared_ptr<const Streams>& changed);

    const std::unique_ptr<gvsp::PacketSource> source;
    std::atomic<bool> isEnding{false};
    std::mutex mutex;
    /// Guarded by the mutex; a list is never changed, only replaced.
    std::shared_ptr<const Streams> streams = std::make_shared<Streams>();
    /// Counts the replacements. Written with the mutex held.
    std::atomic<std::uint64_t> version{0};
};

void StreamReceiver::State::listen(const Streams& listening) const {
    std::vector<gvsp::StreamEndpoint> endpoints;
    for (const auto& stream : listening)
        endpoints.push_back(stream->endpoint);
    source->listen(endpoints);
}

void StreamReceiver::State::publish(std::shared_ptr<const Streams>& changed) {
    streams.swap(changed);
    ++version;
    source->wake();
}

/// Finds the consumers of packets. Used by the receiver's thread only.
class StreamReceiver::Dispatcher {
public:
    explicit Dispatcher(State& state) : m_state(state) {}

    /// Takes over changes of the streams.
    void refresh();
    void dispatch(const gvsp::StreamDatagram& datagram);
    /// Asks the consumers when they are due; how long to wait for packets until then.
    std::chrono::microseconds nextWait();
    void finishRound();

private:
    Stream* find(std::uint64_t key);

    State& m_state;
    /// The streams at this version; at version 0 there are none.
    std::shared_ptr<const State::Streams> m_streams = std::make_shared<State::Streams>();
    std::uint64_t m_version = 0;
    /// Stream of the last packet: most packets follow one of the same stream.
    Stream* m_last = nullptr;
};

void StreamReceiver::Dispatcher::refresh() {
    if (m_version == m_state.version)
        return;
    // May release consumers, which may call the receiver: after the lock.
    std::shared_ptr<const State::Streams> old;
    const std::lock_guard lock(m_state.mutex);
    old = std::exchange(m_streams, m_state.streams);
    m_version = m_state.version;
    m_last = nullptr;
}

StreamReceiver::Stream* StreamReceiver::Dispatcher::find(std::uint64_t key) {
    auto stream =
        std::lower_bound(m_streams->begin(), m_streams->end(), key,
                         [](const auto& known, auto wanted) { return known->key < wanted; });
    while (stream != m_streams->end() && (*stream)->key == key && (*stream)->isRemoved)
        ++stream;
    return stream != m_streams->end() && (*stream)->key == key ? stream->get() : nullptr;
}

void StreamReceiver::Dispatcher::dispatch(const gvsp::StreamDatagram& datagram) {
    const std::uint64_t key = keyOf(datagram.sender, datagram.port);
    if (m_last == nullptr || m_last->key != key || m_last->isRemoved) {
        m_last = find(key);
        // It may have been added while the source hands over packets.
        if (m_last == nullptr) {
            refresh();
            m_last = find(key);
        }
        if (m_last == nullptr)
            return;
    }
    m_last->hasPackets = true;
    m_last->consumer->packet(datagram);
}

std::chrono::microseconds StreamReceiver::Dispatcher::nextWait() {
    std::optional<Clock::time_point> first;
    for (const auto& stream : *m_streams) {
        stream->due = stream->isRemoved ? std::nullopt : stream->consumer->due();
        if (stream->due && (!first || *stream->due < *first))
            first = stream->due;
    }
    if (!first)
        return longestWait;
    const auto wait = std::chrono::ceil<std::chrono::microseconds>(*first - Clock::now());
    return std::clamp<std::chrono::microseconds>(wait, std::chrono::microseconds(0), longestWait);
}

void StreamReceiver::Dispatcher::finishRound() {
    const auto now = Clock::now();
    for (const auto& stream : *m_streams) {
        const bool isDue = stream->due && *stream->due <= now;
        if (std::exchange(stream->hasPackets, false) || isDue) {
            if (!stream->isRemoved)
                stream->consumer->caughtUp();
        }
    }
}

StreamReceiver::StreamReceiver(std::unique_ptr<gvsp::PacketSource> source)
    : m_state(std::make_shared<State>(std::move(source))),
      m_thread([state = m_state] { run(*state); }) {}

StreamReceiver::~StreamReceiver() {
    {
        const std::lock_guard lock(m_state->mutex);
        for (const auto& stream : *m_state->streams)
            stream->isRemoved = true;
    }
    m_state->isEnding = true;
    m_state->source->wake();
    if (m_thread.get_id() == std::this_thread::get_id())
        m_thread.detach();
    else
        m_thread.join();
}

void StreamReceiver::run(State& state) {
    setCurrentSdkThread(SdkThread::Frames);
    Dispatcher dispatcher(state);
    const gvsp::PacketSource::Handler handOver =
        [&dispatcher](const gvsp::StreamDatagram& datagram) {
            dispatcher.dispatch(datagram);
        };
    while (!state.isEnding) {
        try {
            dispatcher.refresh();
            state.source->receive(dispatcher.nextWait(), handOver);
            dispatcher.finishRound();
        } catch (const std::bad_alloc&) {
            // Packets are lost, as in a full ring; the host application goes on.
        }
    }
}

void StreamReceiver::add(const gvsp::StreamEndpoint& endpoint,
                         std::shared_ptr<PacketConsumer> consumer) {
    const auto stream = std::make_shared<Stream>(endpoint, std::move(consumer));
    std::shared_ptr<const State::Streams> changed;
    const std::lock_guard lock(m_state->mutex);
    State::Streams streams = *m_state->streams;
    const auto place = std::upper_bound(
        streams.begin(), streams.end(), stream,
        [](const auto& added, const auto& known) { return added->key < known->key; });
    streams.insert(place, stream);
    m_state->listen(streams);
    changed = std::make_shared<const State::Streams>(std::move(streams));
    m_state->publish(changed);
}

void StreamReceiver::remove(const PacketConsumer& consumer) {
    // Ends after the lock: it may release consumers, which may call the receiver.
    std::shared_ptr<const State::Streams> changed;
    const std::lock_guard lock(m_state->mutex);
    State::Streams streams;
    for (const auto& stream : *m_state->streams) {
        if (stream->consumer.get() == &consumer)
            stream->isRemoved = true;
        else
            streams.push_back(stream);
    }
    if (streams.size() == m_state->streams->size())
        return;
    changed = std::make_shared<const State::Streams>(std::move(streams));
    m_state->publish(changed);
    m_state->listen(*m_state->streams);
}

gvsp::SourceCounts StreamReceiver::counts() const {
    return m_state->source->counts();
}

std::chrono::milliseconds StreamReceiver::latency() const {
    return m_state->source->latency();
}

} // namespace orv::aravis
