// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace gvsp {

/// A set of packet numbers below a limit. Not thread-safe.
class PacketSet {
public:
    explicit PacketSet(std::size_t limit) : m_words((limit + bits - 1) / bits, 0) {}

    bool contains(std::size_t number) const {
        return (m_words[number / bits] >> (number % bits) & 1U) != 0;
    }
    /// Answers false for a number that was in the set.
    bool add(std::size_t number) {
        if (contains(number))
            return false;
        m_words[number / bits] |= std::uint64_t{1} << (number % bits);
        ++m_count;
        return true;
    }
    std::size_t count() const { return m_count; }

private:
    static constexpr std::size_t bits = 64;

    std::vector<std::uint64_t> m_words;
    std::size_t m_count = 0;
};

} // namespace gvsp
