// SPDX-License-Identifier: BSD-3-Clause
#include "gige/Subnet.h"
#include "gige/AddressProbe.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>

#include <utility>
#include <vector>

namespace {

using namespace gige;

TEST(Subnet, offersTheLongestRangeThatNobodyUses) {
    const Subnet subnet(0x0A000005, 0xFFFFFFF0); // 10.0.0.0 to 10.0.0.15
    const struct {
        std::vector<std::uint32_t> used;
        std::uint32_t first;
        std::uint32_t last;
    } cases[] = {{{}, 1, 14},
                 {{1}, 2, 14},
                 {{14, 9}, 1, 8},
                 {{0xFFFFFFFF, 4, 4}, 5, 14},
                 {{1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12, 13, 14}, 8, 8}};
    for (auto [used, first, last] : cases) {
        for (std::uint32_t& each : used)
            each = each < 16 ? each + 0x0A000000 : each;
        const auto range = subnet.longestFree(used);
        ASSERT_TRUE(range);
        EXPECT_EQ(range->first - 0x0A000000, first);
        EXPECT_EQ(range->last - 0x0A000000, last);
    }
    EXPECT_FALSE(Subnet(0x0A000001, maskOfPrefix(30)).longestFree({0x0A000001, 0x0A000002}));
    EXPECT_EQ(subnet.text(), "10.0.0.0/28");
    EXPECT_EQ(prefixOfMask(maskOfPrefix(32)), 32);
}

TEST(KnownNeighbour, isACompleteEntryOfTheAdapter) {
    const FileTree files;
    const auto table = files.write(
        "arp", "IP address       HW type     Flags       HW address            Mask     "
               "Device\n"
               "10.0.0.2         0x1         0x2         02:fc:00:00:00:02     *        "
               "eth1\n"
               "10.0.0.3         0x1         0x0         00:00:00:00:00:00     *        "
               "eth0\n"
               "10.0.0.2         0x1         0x6         02:fc:00:00:00:01     *        "
               "eth0\n");
    const platform::NetworkAdapter adapter{"eth0"};
    EXPECT_EQ(knownNeighbour(adapter, 0x0A000002, table), std::optional(0x02FC00000001U));
    EXPECT_FALSE(knownNeighbour(adapter, 0x0A000003, table)) << "nobody has answered";
    EXPECT_FALSE(knownNeighbour(adapter, 0x0A000002, files.root() / "nothing"));
}

} // namespace
