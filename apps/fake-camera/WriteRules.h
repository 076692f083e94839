// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "fake-camera/CameraRegisters.h"
#include "fake-camera/Protocol.h"

namespace fakecamera {

/// Smallest and largest value of a register.
struct WriteRange {
    std::uint32_t minimum = 0;
    std::uint32_t maximum = 0xffffffff;
};

/// Range of a register that a host may write.
WriteRange writeRange(std::uint32_t address);

/// Whether a host may write \p value to the four bytes at \p address. Refuses every value with
/// which the camera could not stream.
protocol::Status checkWrite(const CameraRegisters& registers, std::uint32_t address,
                            std::uint32_t value);

} // namespace fakecamera
