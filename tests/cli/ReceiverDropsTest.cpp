// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ReceiverDrops.h"

#include <gmock/gmock.h>

namespace {

using namespace cli;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(ReceiverDrops, goOnOverFurtherSocketsAndPorts) {
    ReceiverDrops drops;
    StreamReadings streams;
    std::vector<platform::UdpSocketEntry> sockets;
    const auto readAll = [&](std::uint16_t port, std::uint64_t packets) {
        streams[{1, 2, port}].host = 2;
        streams[{1, 2, port}].port = port;
        streams[{1, 2, port}].figures.packets = packets;
        return drops.read(streams, sockets);
    };
    const auto read = [&](std::uint16_t port, std::uint64_t packets, std::uint64_t dropped,
                          std::uint64_t inode = 7) {
        sockets = {{2, port, dropped, inode}};
        return readAll(port, packets);
    };
    const StreamKey first(1, 2, 4001);
    EXPECT_THAT(read(4001, 100, 5), ElementsAre(Pair(first, 0)));
    EXPECT_THAT(read(4001, 1000, 25), ElementsAre(Pair(first, 20)));
    EXPECT_THAT(read(4001, 1500, 3, 8), ElementsAre(Pair(first, 23))) << "another socket";
    EXPECT_THAT(read(4001, 1600, 30, 9), ElementsAre(Pair(first, 53)))
        << "with more than the former";
    EXPECT_THAT(read(4001, 1640, 71, 9), ElementsAre(Pair(first, 94)));
    sockets.push_back({0, 4001, 1, 10});
    EXPECT_THAT(readAll(4001, 1700), ElementsAre(Pair(first, 95))) << "two sockets";
    sockets.clear();
    EXPECT_THAT(readAll(4001, 1800), IsEmpty()) << "all are closed";
    EXPECT_THAT(read(4001, 1900, 99, 11), IsEmpty()) << "it refuses all of a hundred packets";
    EXPECT_THAT(read(4001, 2000, 5, 12), ElementsAre(Pair(first, 100)));
    streams.clear();
    const StreamKey next(1, 2, 4009);
    streams[next].before.packets = 2000;
    EXPECT_THAT(read(4009, 2100, 0), ElementsAre(Pair(next, 100)));
    EXPECT_THAT(read(4009, 2200, 100), IsEmpty()) << "the socket refuses all packets";
    EXPECT_THAT(read(4009, 3200, 200), ElementsAre(Pair(next, 300)));
    streams.clear();
    streams[{7, 2, 4009}].before.packets = 1;
    EXPECT_THAT(read(4001, 9, 1), ElementsAre(Pair(first, 0))) << "the camera has begun anew";
}

} // namespace
