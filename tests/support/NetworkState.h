// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/Descriptor.h"

#include <sys/socket.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>

/// Counts of the kernel in the network of tools/congested-network.
namespace fakecamera {

/// Number of packet sockets; negative when this user may not open any.
inline int packetSockets() {
    if (!platform::Descriptor(socket(PF_PACKET, SOCK_RAW, 0)).isOpen())
        return -1;
    std::ifstream list("/proc/net/packet");
    return static_cast<int>(std::count(std::istreambuf_iterator<char>(list), {}, '\n')) - 1;
}

/// Packets that the switches have dropped; negative when they do not tell.
inline long long switchDrops() {
    const std::unique_ptr<FILE, decltype(&pclose)> output(
        popen("nsenter --net=/run/netns/switch tc -s qdisc show", "r"), pclose);
    char line[256] = {};
    long long sum = -1;
    while (fgets(line, sizeof line, output.get()) != nullptr) {
        long long dropped = 0;
        if (std::sscanf(line, " Sent %*d bytes %*d pkt (dropped %lld", &dropped) == 1)
            sum = std::max(sum, 0LL) + dropped;
    }
    return sum;
}

} // namespace fakecamera
