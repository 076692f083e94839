// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <iostream>
#include <streambuf>

/// Takes what is logged out of the report while it lives, without storing it.
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
