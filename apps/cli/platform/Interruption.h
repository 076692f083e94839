// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <chrono>

namespace cli {

/// While it lives, a wish of the user or the system that the program ends (Ctrl+C, a closed
/// terminal, a shutdown) does not end it, but is told here, so that cameras can be stopped and
/// closed before. A second Ctrl+C ends the program at once. At most one lives at a time. Bound to
/// one thread.
class Interruption {
public:
    Interruption();
    ~Interruption();

    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// Sleeps for the time, or until the program is to end; true when it is, from then on always.
    bool wait(std::chrono::milliseconds time);
    bool isRequested() { return wait(std::chrono::milliseconds(0)); }
};

} // namespace cli
