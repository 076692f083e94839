// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/AddressText.h"

#include <cstdint>
#include <netinet/in.h>
#include <optional>
#include <string>

/// IPv4 addresses as numbers in host byte order: 192.168.1.10 is 0xC0A8010A. Reentrant.
namespace platform {

/// Reads a text like "192.168.1.10"; nothing when it is no IPv4 address.
std::optional<std::uint32_t> parseAddress(const std::string& text);

/// Address and port as the operating system's calls take them.
sockaddr_in socketAddress(std::uint32_t address, std::uint16_t port);

/// The number of an IPv4 socket address; 0 for null and for an address of another kind.
std::uint32_t addressNumber(const sockaddr* address);

} // namespace platform
