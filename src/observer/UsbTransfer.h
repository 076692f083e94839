// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace observer {

/// A bulk transfer from a device to this host that has ended. Valid during the call only.
struct UsbTransfer {
    std::uint16_t bus = 0;
    /// Number of the device on its bus; changes each time that it is plugged in.
    std::uint8_t device = 0;
    /// With the bit of the direction, 0x80.
    std::uint8_t endpoint = 0;
    /// 0, or an error number of the kernel below 0.
    std::int32_t status = 0;
    /// Bytes that came.
    std::uint32_t size = 0;
    /// The first of them; there may be none.
    const std::uint8_t* data = nullptr;
    std::size_t captured = 0;
    /// When the transfer ended, since 1970.
    std::chrono::nanoseconds arrival{0};
};

} // namespace observer
