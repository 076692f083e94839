// SPDX-License-Identifier: BSD-3-Clause
#include "platform/UdpSocketTable.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>

namespace {

TEST(UdpSocketTable, tellsDropsByAddressAndPort) {
    using Drops = std::map<std::uint64_t, std::uint64_t>;
    const FileTree files;
    const std::string heading = "  sl  local_address rem_address   st tx_queue rx_queue tr "
                                "tm->when retrnsmt   uid  timeout "
                                "inode ref pointer drops\n";
    const auto line = [](const char* local, const char* drops, const char* inode = "26") {
        return std::string("  100: ") + local +
               " 00000000:0000 07 00000000:00000000 00:00000000 00000000     0        0 " + inode +
               " 2 0 " + drops + "\n";
    };
    files.write("proc/net/udp", heading + line("0100000A:1F90", "17") +
                                    line("00000000:1F90", "5", "31") +
                                    line("0100000A:1F91", "many") + line("nothing", "3") +
                                    line("0200000A:1F92", "9"));
    const auto sockets = platform::readUdpSockets(files.root());
    EXPECT_EQ(sockets.size(), 3U);
    EXPECT_EQ(platform::dropsAt(sockets, 0x0A000001, 8080), (Drops{{26, 17}, {31, 5}}))
        << "also of all addresses";
    EXPECT_EQ(platform::dropsAt(sockets, 0x0A000003, 8080), (Drops{{31, 5}}));
    EXPECT_EQ(platform::dropsAt(sockets, 0x0A000001, 8082), Drops());
    EXPECT_TRUE(platform::readUdpSockets(files.root() / "nowhere").empty());
}

} // namespace
