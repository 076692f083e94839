// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/Sysfs.h"

#include <charconv>
#include <fstream>

namespace host {

namespace {

/// A whole line that is a number; 0 for anything else.
std::uint32_t number(const std::string& line) {
    std::uint32_t value = 0;
    const char* end = line.data() + line.size();
    const auto parsed = std::from_chars(line.data(), end, value);
    return parsed.ec == std::errc() && parsed.ptr == end ? value : 0;
}

/// Bits per second of a number of Mbit/s.
std::uint64_t linkSpeed(std::uint32_t megabits) {
    // An unknown speed is -1, which older kernels write as the unsigned number of these bits.
    constexpr std::uint32_t unknown = 0xFFFFFFFF;
    return megabits == unknown ? 0 : std::uint64_t{megabits} * 1'000'000;
}

/// Bytes of "02:fc:00:00:00:01", up to the first thing that is none.
std::array<std::uint8_t, 32> physicalAddress(const std::string& text) {
    std::array<std::uint8_t, 32> bytes{};
    const char* position = text.data();
    const char* end = text.data() + text.size();
    for (std::uint8_t& byte : bytes) {
        const auto parsed = std::from_chars(position, end, byte, 16);
        if (parsed.ec != std::errc() || parsed.ptr == end || *parsed.ptr != ':')
            break;
        position = parsed.ptr + 1;
    }
    return bytes;
}

} // namespace

std::string sysfsAttribute(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

InterfaceEntry sysfsInterfaceEntry(const std::string& interfaceName,
                                   const std::filesystem::path& sysfs) {
    const std::filesystem::path folder = sysfs / "class" / "net" / interfaceName;
    InterfaceEntry entry;
    entry.transmitLinkSpeed = linkSpeed(number(sysfsAttribute(folder / "speed")));
    entry.mtu = number(sysfsAttribute(folder / "mtu"));
    entry.physicalAddress = physicalAddress(sysfsAttribute(folder / "address"));
    entry.alias.assign(interfaceName.begin(), interfaceName.end());
    return entry;
}

} // namespace host
