// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <arv.h>

#include <string>

namespace orv::aravis {

/// Receives the error of one library call at a time:
/// arv_device_read_register(device, address, &value, failure.out()).
class LibraryError {
public:
    LibraryError() = default;
    ~LibraryError() { g_clear_error(&m_error); }
    LibraryError(const LibraryError&) = delete;
    LibraryError& operator=(const LibraryError&) = delete;

    /// Where the library stores its error; clears the previous one.
    GError** out() {
        g_clear_error(&m_error);
        return &m_error;
    }
    /// The SDK's code for the error; success when there is none.
    OrvErrorType code() const;
    std::string text() const { return m_error ? m_error->message : std::string(); }

private:
    GError* m_error = nullptr;
};

} // namespace orv::aravis
