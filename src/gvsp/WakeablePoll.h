// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/Descriptor.h"

#include <chrono>

namespace gvsp {

/// Waits until a descriptor is readable; another thread can end the wait. Thread-safe.
class WakeablePoll {
public:
    WakeablePoll();

    /// Whether the system gave a descriptor for wake(). Without it, wake() does nothing.
    bool isOpen() const { return m_wake.isOpen(); }
    /// Waits at most \p limit. A negative \p handle waits for wake() only. Returns the events of
    /// poll() for \p handle; 0 after \p limit, after wake() and after a signal.
    short wait(int handle, std::chrono::microseconds limit) const;
    /// Ends the running wait, or else the next one. Several calls may end one wait together.
    void wake() const;

private:
    const platform::Descriptor m_wake;
};

} // namespace gvsp
