// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <atomic>
#include <cstdint>

namespace orv {

/// Counts calls and makes one of them fail. Thread-safe, without a lock.
class CallCounter {
public:
    /// Counts a call. An error when this call has to fail.
    OrvErrorType enter() {
        const std::uint64_t number = m_count.fetch_add(1) + 1;
        return number == m_failNumber.load() ? m_failCode.load() : OrvErrorSuccess;
    }

    std::uint64_t count() const { return m_count.load(); }
    void reset() { m_count.store(0); }
    void failCall(std::uint64_t number, OrvErrorType code) {
        m_failCode.store(code);
        m_failNumber.store(number);
    }

private:
    std::atomic<std::uint64_t> m_count{0};
    std::atomic<std::uint64_t> m_failNumber{0};
    std::atomic<OrvErrorType> m_failCode{OrvErrorSuccess};
};

} // namespace orv
