// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <iostream>
#include <streambuf>

/// Discards log lines while it lives, so that they do not mix with the report.
class SilencedLog {
public:
    SilencedLog() : m_previous(std::cout.rdbuf(&m_sink)) {}
    ~SilencedLog() { std::cout.rdbuf(m_previous); }

    SilencedLog(const SilencedLog&) = delete;
    SilencedLog& operator=(const SilencedLog&) = delete;

private:
    struct Sink : std::streambuf {
        int overflow(int c) override { return c; }
        std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
    };

    Sink m_sink;
    std::streambuf* m_previous;
};
