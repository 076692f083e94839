// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "tests/fakecamera/CameraRegisters.h"
#include "tests/fakecamera/Protocol.h"

namespace fakecamera {

/// Whether a camera takes a value for four bytes of its memory. It takes none that it could not
/// stream with, whatever a host may write past the description of its features.
protocol::Status checkWrite(const CameraRegisters& registers, std::uint32_t address,
                            std::uint32_t value);

} // namespace fakecamera
