// SPDX-License-Identifier: BSD-3-Clause
#include "logging/ForwardingBuffer.h"

#include <deque>
#include <memory>

namespace Logging {

namespace {

std::mutex& exchangeMutex() {
    static std::mutex mutex;
    return mutex;
}

} // namespace

/// While it exists, a call counts as inside the sink.
class ForwardingBuffer::Visit {
public:
    explicit Visit(ForwardingBuffer& owner) : m_owner(owner) {
        const std::lock_guard lock(m_owner.m_mutex);
        m_sink = m_owner.m_sink;
        if (m_sink != nullptr)
            ++m_owner.m_writers;
    }
    ~Visit() {
        if (m_sink == nullptr)
            return;
        const std::lock_guard lock(m_owner.m_mutex);
        --m_owner.m_writers;
        m_owner.m_left.notify_all();
    }

    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;

    /// Null when there is nothing to write to.
    std::streambuf* target() const { return m_sink != nullptr ? m_sink : m_owner.m_previous; }

private:
    ForwardingBuffer& m_owner;
    std::streambuf* m_sink = nullptr;
};

ForwardingBuffer& ForwardingBuffer::make(std::streambuf& sink, std::streambuf* previous) {
    // Never destroyed: other threads and the final flush of the standard streams may use the
    // buffers until the process ends.
    static auto& buffers = *std::make_unique<std::deque<ForwardingBuffer>>().release();
    const std::lock_guard lock(exchangeMutex());
    return buffers.emplace_back(sink, previous);
}

ForwardingBuffer::ForwardingBuffer(std::streambuf& sink, std::streambuf* previous)
    : m_previous(previous), m_sink(&sink) {}

void ForwardingBuffer::endSink() {
    std::unique_lock lock(m_mutex);
    m_sink = nullptr;
    m_left.wait(lock, [this] { return m_writers == 0; });
}

ForwardingBuffer::int_type ForwardingBuffer::overflow(int_type c) {
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        const char character = traits_type::to_char_type(c);
        xsputn(&character, 1);
    }
    return traits_type::not_eof(c);
}

std::streamsize ForwardingBuffer::xsputn(const char* s, std::streamsize n) {
    const Visit visit(*this);
    return visit.target() != nullptr ? visit.target()->sputn(s, n) : n;
}

int ForwardingBuffer::sync() {
    const Visit visit(*this);
    return visit.target() != nullptr ? visit.target()->pubsync() : 0;
}

std::streambuf* bufferOf(std::ostream& stream) {
    const std::lock_guard lock(exchangeMutex());
    return stream.rdbuf();
}

void setBufferOf(std::ostream& stream, std::streambuf* buffer) {
    const std::lock_guard lock(exchangeMutex());
    stream.rdbuf(buffer);
}

} // namespace Logging
