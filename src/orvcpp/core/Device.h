// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <mutex>

namespace orv {

/// Guards a module's features, and decides whether they are accessible.
class Device {
public:
    virtual ~Device() = default;

    std::mutex& mutex() { return m_mutex; }
    /// The error of a call that reads, or writes; success when permitted. Requires the mutex.
    virtual OrvErrorType admits(bool /*writing*/) const { return OrvErrorSuccess; }
    /// Called with the mutex held when a feature was written or a command has completed.
    virtual void changed() {}

private:
    std::mutex m_mutex;
};

} // namespace orv
