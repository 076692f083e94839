// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "fake-camera/CameraRegisters.h"

#include <cstdint>
#include <string>

namespace fakecamera {

/// The IPv4 address of the camera as it starts, is told another one, and remembers one for its next
/// start. Bound to one thread.
class CameraAddress {
public:
    /// \p adapter is the network adapter of this computer that takes the camera's address; without
    /// it, the camera takes only addresses that this computer has. \p memory is the file that keeps
    /// the persistent settings; without it, the camera forgets them.
    CameraAddress(CameraRegisters& registers, std::string adapter, std::string memory);

    /// Takes the persistent address, if it is switched on, or else \p address. Throws
    /// std::system_error when the adapter cannot take it.
    void begin(std::uint32_t address);
    /// Whether the camera can have an address.
    bool canTake(std::uint32_t address, std::uint32_t mask) const;
    /// Takes the settings of the registers of the current ones. Throws as begin() does.
    void takeCurrent() const;
    /// Keeps the persistent settings of the registers for the next start.
    void remember() const;

private:
    CameraRegisters& m_registers;
    const std::string m_adapter;
    const std::string m_memory;
};

} // namespace fakecamera
