// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gige/Gvcp.h"

#include <cstdint>
#include <optional>

namespace gige {

enum class ControlResult { Taken, Denied, NoAnswer };

/// Controls a camera for a few writes of registers, within less than the heartbeat of 3 s that
/// cameras have by default. Gives the control back at the end. Bound to one thread.
class ControlSession {
public:
    /// \p address in host byte order. Asks nothing yet.
    explicit ControlSession(std::uint32_t address);
    ~ControlSession();
    ControlSession(const ControlSession&) = delete;
    ControlSession& operator=(const ControlSession&) = delete;

    ControlResult take();
    /// Nothing when the camera refuses or does not answer.
    std::optional<std::uint32_t> read(std::uint32_t address);
    /// False when the camera refuses or does not answer.
    bool write(std::uint32_t address, std::uint32_t value);

private:
    GvcpConnection m_camera;
    bool m_isTaken = false;
};

} // namespace gige
