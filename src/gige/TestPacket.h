// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/UdpSocket.h"

#include <chrono>
#include <cstddef>

namespace gige {

/// Waits for the test packet of \p size bytes, its IP and UDP headers included, that a camera sends
/// to a bound socket, at most \p limit; ignores packets of other sizes. False when it does not
/// come. Reentrant.
bool awaitTestPacket(const platform::UdpSocket& socket, std::size_t size,
                     std::chrono::milliseconds limit);

} // namespace gige
