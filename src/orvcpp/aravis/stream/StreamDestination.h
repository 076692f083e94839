// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/UdpSocket.h"

#include "OrvCPP/OrvTypes.h"

#include <arv.h>

#include <cstddef>
#include <cstdint>

namespace orv::aravis {

/// Makes a GigE camera send its stream to a bound socket, in packets that arrive there. On the
/// device's thread. Success, or the error of a register that cannot be written.
OrvErrorType directStream(ArvDevice* device, const platform::UdpSocket& socket);

/// Whether the camera sends packets again that are requested. On the device's thread.
bool canResend(ArvDevice* device);

/// Ticks per second of the camera's clock; 0 for a camera without one. On the device's thread.
std::uint64_t readTickFrequency(ArvDevice* device);

/// Bytes of the camera's packets (GevSCPSPacketSize); 0 when they cannot be read. On the device's
/// thread.
std::size_t readPacketSize(ArvDevice* device);

} // namespace orv::aravis
