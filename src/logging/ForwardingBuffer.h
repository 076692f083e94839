// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <condition_variable>
#include <mutex>
#include <ostream>
#include <streambuf>

namespace Logging {

/// Stream buffer that forwards to a sink, and to the stream's previous buffer once the sink has
/// ended. Thread-safe.
///
/// A sink alone cannot end safely: another thread may have read the stream's buffer pointer just
/// before it was exchanged, and would then write into a destroyed object. So forwarding buffers are
/// never destroyed, and take about 200 bytes each until the process ends.
class ForwardingBuffer : public std::streambuf {
public:
    /// \p sink must live until endSink() returns. \p previous may be null: then text is dropped
    /// after the sink's end.
    static ForwardingBuffer& make(std::streambuf& sink, std::streambuf* previous);

    ForwardingBuffer(std::streambuf& sink, std::streambuf* previous);

    /// Returns when no thread is inside the sink, and none will enter it. Must not be called by a
    /// thread that is inside the sink.
    void endSink();

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* s, std::streamsize n) override;
    int sync() override;

private:
    class Visit;

    std::streambuf* const m_previous;
    std::mutex m_mutex;
    std::condition_variable m_left;
    /// Null after its end. Guarded by m_mutex, as is m_writers.
    std::streambuf* m_sink;
    /// Calls that are inside the sink.
    int m_writers = 0;
};

/// The stream's buffer, null when it has none. Thread-safe with setBufferOf.
std::streambuf* bufferOf(std::ostream& stream);
void setBufferOf(std::ostream& stream, std::streambuf* buffer);

} // namespace Logging
