// SPDX-License-Identifier: BSD-3-Clause
#include "logging/ThreadLogStream.h"

#include <string_view>

namespace Logging {

ThreadLogStream::ThreadLogStream(std::ostream& stream, LogMessageType type, QObject* parent)
    : QObject(parent), m_stream(stream), m_previous(nullptr), m_type(type) {
    qRegisterMetaType<LogMessageType>("LogMessageType");
    m_previous = m_stream.rdbuf(this);
}

ThreadLogStream::~ThreadLogStream() {
    std::string rest;
    {
        const std::lock_guard lock(m_mutex);
        rest.swap(m_line);
    }
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
    std::string complete;
    {
        const std::lock_guard lock(m_mutex);
        if (lastNewline == std::string_view::npos) {
            m_line.append(text);
            return n;
        }
        complete.swap(m_line);
        m_line = text.substr(lastNewline + 1);
    }
    complete.append(text.substr(0, lastNewline + 1));

    std::size_t begin = 0;
    for (auto end = complete.find('\n'); end != std::string::npos;
         end = complete.find('\n', begin)) {
        emitLine(complete.substr(begin, end - begin));
        begin = end + 1;
    }
    return n;
}

void ThreadLogStream::emitLine(const std::string& line) {
    emit sendLogString(m_type, QString::fromStdString(line));
}

} // namespace Logging
