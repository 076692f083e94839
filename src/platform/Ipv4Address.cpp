// SPDX-License-Identifier: BSD-3-Clause
#include "platform/Ipv4Address.h"

#include <arpa/inet.h>

namespace platform {

std::optional<std::uint32_t> parseAddress(const std::string& text) {
    in_addr address{};
    if (inet_pton(AF_INET, text.c_str(), &address) != 1)
        return std::nullopt;
    return ntohl(address.s_addr);
}

sockaddr_in socketAddress(std::uint32_t address, std::uint16_t port) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_addr.s_addr = htonl(address);
    result.sin_port = htons(port);
    return result;
}

std::uint32_t addressNumber(const sockaddr* address) {
    if (address == nullptr || address->sa_family != AF_INET)
        return 0;
    return ntohl(reinterpret_cast<const sockaddr_in*>(address)->sin_addr.s_addr);
}

} // namespace platform
