// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/CallCounter.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>

namespace orv {

/// Admits the calls to one provider's objects from start-up to shutdown: every call enters here
/// first. Thread-safe.
class ProviderCalls {
public:
    ProviderCalls(std::shared_ptr<CallCounter> callCounter, std::chrono::microseconds delay)
        : m_callCounter(std::move(callCounter)), m_delay(delay) {}

    /// Counts a call and delays it; the error that the call has to answer, if any.
    OrvErrorType enter() {
        if (!m_running.load())
            return OrvErrorApiNotStarted;
        const OrvErrorType error = m_callCounter->enter();
        if (m_delay.count() > 0)
            std::this_thread::sleep_for(m_delay);
        return error;
    }

    bool isRunning() const { return m_running.load(); }
    void end() { m_running.store(false); }

private:
    const std::shared_ptr<CallCounter> m_callCounter;
    const std::chrono::microseconds m_delay;
    std::atomic<bool> m_running{true};
};

} // namespace orv
