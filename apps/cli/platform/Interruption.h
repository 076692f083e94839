// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <chrono>

namespace cli {

/// Turns a request to end the program (Ctrl+C, a closed terminal, a shutdown) into a flag, so that
/// cameras can be stopped and closed first. A second Ctrl+C ends the program at once. At most one
/// instance at a time. Bound to one thread.
class Interruption {
public:
    Interruption();
    ~Interruption();

    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Waits for the time or the request. Returns whether the end was requested, now or earlier.
    bool wait(std::chrono::milliseconds time);
    bool isRequested() { return wait(std::chrono::milliseconds(0)); }
};

} // namespace cli
