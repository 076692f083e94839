// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <unistd.h>

namespace platform {

/// Owns a file descriptor of the operating system, which ends with the object. Reentrant.
class Descriptor {
public:
    /// \p handle is negative when the system gave none.
    explicit Descriptor(int handle) : m_handle(handle) {}
    ~Descriptor() {
        if (m_handle >= 0)
            close(m_handle);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int handle() const { return m_handle; }
    bool isOpen() const { return m_handle >= 0; }

private:
    const int m_handle;
};

} // namespace platform
