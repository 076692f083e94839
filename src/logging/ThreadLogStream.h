// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "logging/LogMessageType.h"

#include <QObject>
#include <QString>

#include <mutex>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace Logging {

class ForwardingBuffer;

/// Takes the place of a standard stream's buffer and emits every complete line (UTF-8, without its
/// newline) as a signal. Text after the last newline waits for the next write, or for the
/// destructor, which emits it and gives the stream its previous buffer back.
///
/// Thread-safe: lines may be written from any thread and are emitted in that thread, so that a
/// connection of the automatic type is queued when the receiver lives elsewhere. A line written in
/// one piece stays in one piece. No lock is held while a line is emitted: a slot may write lines.
/// An exception that a slot throws is dropped, since it would mark the stream as broken.
///
/// Other threads may write while the object is created and destroyed. The destructor waits for
/// lines that they are emitting; afterwards they write to the previous buffer. So a slot must not
/// destroy the object, and a slot in another thread must not wait for the thread that destroys it.
class ThreadLogStream : public QObject, public std::basic_streambuf<char> {
    Q_OBJECT

public:
    /// \p stream must outlive this object.
    ThreadLogStream(std::ostream& stream, LogMessageType type, QObject* parent = nullptr);
    ~ThreadLogStream() override;

signals:
    void sendLogString(LogMessageType type, QString str);

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* s, std::streamsize n) override;

private:
    void append(std::string_view text);
    std::string takeLine();
    void emitLine(const std::string& line);
    void emitRest();

    std::ostream& m_stream;
    std::streambuf* m_previous;
    /// Guarded by m_mutex.
    std::string m_line;
    LogMessageType m_type;
    std::mutex m_mutex;
    /// The stream's buffer while this object exists; forwards to this object.
    ForwardingBuffer& m_forwarding;
};

} // namespace Logging
