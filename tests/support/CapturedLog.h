// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

/// Collects what is written to a standard stream while it lives, instead of the console.
class CapturedLog {
public:
    explicit CapturedLog(std::ostream& stream = std::cout)
        : m_stream(stream), m_previous(stream.rdbuf(&m_buffer)) {}
    ~CapturedLog() { m_stream.rdbuf(m_previous); }

    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    /// Everything so far.
    std::string text() const { return m_buffer.str(); }

    /// Everything so far, line by line, prefixes included.
    std::vector<std::string> lines() const {
        std::istringstream input(text());
        std::vector<std::string> result;
        for (std::string line; std::getline(input, line);)
            result.push_back(line);
        return result;
    }

    /// How many lines are exactly \p line.
    std::ptrdiff_t count(const std::string& line) const {
        const auto all = lines();
        return std::count(all.begin(), all.end(), line);
    }

    bool has(const std::string& line) const { return count(line) > 0; }

    /// Forgets what was captured.
    void clear() { m_buffer.str({}); }

private:
    std::ostream& m_stream;
    std::stringbuf m_buffer;
    std::streambuf* m_previous;
};
