// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/Sysfs.h"

#include <charconv>
#include <fstream>

namespace host {

namespace {

/// First line of a file; empty when it cannot be read.
std::string readLine(const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

/// Bits per second of a number of Mbit/s; 0 for anything else.
std::uint64_t linkSpeed(const std::string& megabits) {
    std::uint32_t number = 0;
    const char* end = megabits.data() + megabits.size();
    const auto parsed = std::from_chars(megabits.data(), end, number);
    // An unknown speed is -1, which older kernels write as the unsigned number of these bits.
    constexpr std::uint32_t unknown = 0xFFFFFFFF;
    if (parsed.ec != std::errc() || parsed.ptr != end || number == unknown)
        return 0;
    return std::uint64_t{number} * 1'000'000;
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

InterfaceEntry sysfsInterfaceEntry(const std::string& interfaceName,
                                   const std::filesystem::path& sysfs) {
    const std::filesystem::path folder = sysfs / "class" / "net" / interfaceName;
    InterfaceEntry entry;
    entry.transmitLinkSpeed = linkSpeed(readLine(folder / "speed"));
    entry.physicalAddress = physicalAddress(readLine(folder / "address"));
    entry.alias.assign(interfaceName.begin(), interfaceName.end());
    return entry;
}

} // namespace host
