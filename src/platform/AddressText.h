// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <string>

/// Addresses as people read them, on every system. Reentrant.
namespace platform {

/// "192.168.1.10" of an address in host byte order; parseAddress() reads it.
std::string addressText(std::uint32_t address);
/// The same with the length of the mask: "192.168.1.10/24".
std::string addressText(std::uint32_t address, std::uint32_t mask);
/// "02:fc:00:00:00:01"; macNumber() reads it.
std::string macText(std::uint64_t mac);

} // namespace platform
