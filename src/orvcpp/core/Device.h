// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <mutex>

namespace orv {

/// What stands behind a module's features: guards them, and says whether they can be reached.
class Device {
public:
    virtual ~Device() = default;

    std::mutex& mutex() { return m_mutex; }
    /// Error of reading (or of writing, too) with the mutex held; success when it is permitted.
    virtual OrvErrorType admits(bool /*writing*/) const { return OrvErrorSuccess; }
    /// Called with the mutex held when a feature was written or a command has completed.
    virtual void changed() {}

private:
    std::mutex m_mutex;
};

} // namespace orv
