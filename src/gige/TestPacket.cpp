// SPDX-License-Identifier: BSD-3-Clause
#include "gige/TestPacket.h"

#include <cstdint>

#include <poll.h>
#include <sys/socket.h>

namespace gige {

namespace {

using Clock = std::chrono::steady_clock;

/// Bytes of the headers of IP and UDP.
constexpr std::size_t ipAndUdpSize = 28;

} // namespace

bool awaitTestPacket(const platform::UdpSocket& socket, std::size_t size,
                     std::chrono::milliseconds limit) {
    const auto end = Clock::now() + limit;
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        pollfd waiting{socket.handle(), POLLIN, 0};
        if (left.count() <= 0 || poll(&waiting, 1, static_cast<int>(left.count())) <= 0)
            return false;
        std::uint8_t first = 0;
        const auto received = recv(socket.handle(), &first, sizeof first, MSG_TRUNC | MSG_DONTWAIT);
        if (received >= 0 && static_cast<std::size_t>(received) + ipAndUdpSize == size)
            return true;
    }
}

} // namespace gige
