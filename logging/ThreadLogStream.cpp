// SPDX-License-Identifier: BSD-3-Clause
#include "logging/ThreadLogStream.h"

#include <utility>

namespace Logging {

ThreadLogStream::ThreadLogStream(std::ostream& stream, LogMessageType type, QObject* parent)
    : QObject(parent), m_stream(stream), m_previous(nullptr), m_type(type) {
    qRegisterMetaType<LogMessageType>("LogMessageType");
    m_previous = m_stream.rdbuf(this);
}

ThreadLogStream::~ThreadLogStream() {
    const std::string rest = takeLine();
    if (!rest.empty())
        emitLine(rest);
    m_stream.rdbuf(m_previous);
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
    // Not before: a line that a slot writes would otherwise continue this one.
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
    emit sendLogString(m_type, QString::fromStdString(line));
}

} // namespace Logging
