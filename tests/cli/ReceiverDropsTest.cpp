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
    const auto read = [&](std::uint16_t port, std::uint64_t packets, std::uint64_t dropped) {
        streams[{1, 2, port}].host = 2;
        streams[{1, 2, port}].port = port;
        streams[{1, 2, port}].figures.packets = packets;
        return drops.read(streams, {{2, port, dropped}});
    };
    const StreamKey first(1, 2, 4001);
    EXPECT_THAT(read(4001, 100, 5), ElementsAre(Pair(first, 0)));
    EXPECT_THAT(read(4001, 1000, 25), ElementsAre(Pair(first, 20)));
    EXPECT_THAT(read(4001, 1500, 3), ElementsAre(Pair(first, 20))) << "of another socket";
    EXPECT_THAT(read(4001, 2000, 8), ElementsAre(Pair(first, 25)));
    streams.clear();
    const StreamKey next(1, 2, 4009);
    streams[next].before.packets = 2000;
    EXPECT_THAT(read(4009, 2100, 0), ElementsAre(Pair(next, 25)));
    EXPECT_THAT(read(4009, 2200, 100), IsEmpty()) << "the socket refuses all packets";
    EXPECT_THAT(read(4009, 3200, 200), ElementsAre(Pair(next, 225)));
    streams.clear();
    streams[{7, 2, 4009}].before.packets = 1;
    EXPECT_THAT(read(4001, 9, 1), ElementsAre(Pair(first, 0))) << "the camera has begun anew";
}

} // namespace
