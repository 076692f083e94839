// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/discovery/NetworkAdapters.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <utility>

namespace {

using namespace orv::aravis;

namespace fs = std::filesystem;

TEST(NetworkAdapters, findTheAdapterOfARoute) {
    const auto adapter = adapterTowards(0x7F000509);
    ASSERT_TRUE(adapter);
    EXPECT_EQ(adapter->name, "lo");
    EXPECT_EQ(adapter->address, 0x7F000001U);
    EXPECT_TRUE(adapter->isLoopback);
    EXPECT_FALSE(parseAddress("127.0.0"));
    EXPECT_EQ(macNumber("02:fc:00:00:00:01"), 0x02FC00000001U);
    EXPECT_EQ(macNumber("A-GUID"), 0U);
}

TEST(NetworkAdapters, tellNoSpeedWhereTheKernelTellsNone) {
    EXPECT_EQ(linkSpeed("lo"), 0);
    const fs::path root = fs::path(testing::TempDir()) / ("net-tree-" + std::to_string(::getpid()));
    fs::create_directories(root / "class/net/eth0");
    for (const auto& [text, expected] :
         {std::pair("10000", 10'000'000'000), std::pair("-1", 0L), std::pair("4294967295", 0L)}) {
        std::ofstream(root / "class/net/eth0/speed") << text << '\n';
        EXPECT_EQ(linkSpeed("eth0", root), expected) << text;
    }
    fs::remove_all(root);
}

} // namespace
