// SPDX-License-Identifier: BSD-3-Clause
#include "platform/UdpSocketTable.h"

#include <fstream>
#include <optional>
#include <sstream>
#include <string>

#include <arpa/inet.h>

namespace platform {

namespace {

/// Columns of proc_net_udp; drops is the last.
constexpr int addressColumn = 1;
constexpr int inodeColumn = 9;

std::optional<UdpSocketEntry> readLine(const std::string& line) {
    std::istringstream columns(line);
    std::string column;
    std::string local;
    std::string inode;
    for (int i = 0; columns >> column; ++i) {
        if (i == addressColumn)
            local = column;
        if (i == inodeColumn)
            inode = column;
    }
    UdpSocketEntry entry;
    char colon = 0;
    // As the bytes lie in memory.
    std::uint32_t address = 0;
    std::istringstream place(local);
    if (!(place >> std::hex >> address >> colon >> entry.port) || colon != ':')
        return std::nullopt;
    entry.address = ntohl(address);
    std::istringstream numbers(inode + ' ' + column);
    if (!(numbers >> entry.inode >> entry.drops))
        return std::nullopt;
    return entry;
}

} // namespace

std::vector<UdpSocketEntry> readUdpSockets(const std::filesystem::path& root) {
    std::ifstream file(root / "proc/net/udp");
    std::vector<UdpSocketEntry> sockets;
    for (std::string line; std::getline(file, line);) {
        if (const auto entry = readLine(line))
            sockets.push_back(*entry);
    }
    return sockets;
}

std::map<std::uint64_t, std::uint64_t> dropsAt(const std::vector<UdpSocketEntry>& sockets,
                                               std::uint32_t address, std::uint16_t port) {
    std::map<std::uint64_t, std::uint64_t> drops;
    for (const UdpSocketEntry& socket : sockets) {
        if (socket.port == port && (socket.address == address || socket.address == 0))
            drops[socket.inode] = socket.drops;
    }
    return drops;
}

} // namespace platform
