// SPDX-License-Identifier: BSD-3-Clause
#include "logging/ThreadLogStream.h"

#include "logging/ForwardingBuffer.h"

#include <utility>

namespace Logging {

ThreadLogStream::ThreadLogStream(std::ostream& stream, LogMessageType type, QObject* parent)
    : QObject(parent), m_stream(stream), m_previous(bufferOf(stream)), m_type(type),
      m_forwarding(ForwardingBuffer::make(*this, m_previous)) {
    qRegisterMetaType<LogMessageType>("LogMessageType");
    setBufferOf(m_stream, &m_forwarding);
}

ThreadLogStream::~ThreadLogStream() {
    emitRest();
    setBufferOf(m_stream, m_previous);
    m_forwarding.endSink();
    // What a slot or another thread began meanwhile.
    emitRest();
}

ThreadLogStream::int_type ThreadLogStream::overflow(int_type c) {
    if (traits_type::eq_int_type(c, traits_type::eof()))
        return traits_type::not_eof(c);
    const char character = traits_type::to_char_type(c);
    xsputn(&character, 1);
    return c;
}

std::streamsize ThreadLogStream::xsputn(const char* s, std::streamsize n) {
    const std::string_view text(s, static_cast<std::size_t>(n));
    const auto lastNewline = text.rfind('\n');
    if (lastNewline == std::string_view::npos) {
        append(text);
        return n;
    }

    std::string complete = takeLine().append(text.substr(0, lastNewline + 1));
    std::size_t begin = 0;
    for (auto end = complete.find('\n'); end != std::string::npos;
         end = complete.find('\n', begin)) {
        emitLine(complete.substr(begin, end - begin));
        begin = end + 1;
    }
    // After the emission: a line that a slot writes would otherwise continue this text.
    append(text.substr(lastNewline + 1));
    return n;
}

void ThreadLogStream::append(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    m_line.append(text);
}

std::string ThreadLogStream::takeLine() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_line, {});
}

void ThreadLogStream::emitLine(const std::string& line) {
    try {
        emit sendLogString(m_type, QString::fromStdString(line));
    } catch (...) {
        // Must not reach the stream: it would set badbit and write nothing from then on.
    }
}

void ThreadLogStream::emitRest() {
    const std::string rest = takeLine();
    if (!rest.empty())
        emitLine(rest);
}

} // namespace Logging
