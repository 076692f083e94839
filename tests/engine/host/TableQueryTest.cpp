// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/TableQuery.h"

#include <cstring>
#include <gmock/gmock.h>

namespace {

using host::readTable;

TEST(TableQuery, asksForTheSizeAndThenForTheTable) {
    std::vector<std::uint32_t> sizes;
    const auto table = readTable([&](void* buffer, std::uint32_t& size) -> std::uint32_t {
        EXPECT_EQ(buffer == nullptr, sizes.empty());
        sizes.push_back(size);
        if (buffer == nullptr) {
            size = 3;
            return 122;
        }
        std::memcpy(buffer, "abc", 3);
        return 0;
    });

    EXPECT_THAT(sizes, testing::ElementsAre(0, 3));
    ASSERT_TRUE(table);
    EXPECT_EQ(table->at(2), std::byte{'c'});
}

TEST(TableQuery, isEmptyAfterTwoCallsWithoutATable) {
    // The system answers neither a size nor a table, or the table has grown between the calls.
    for (const std::uint32_t answer : {0U, 5U, 232U, host::insufficientBuffer}) {
        int calls = 0;
        EXPECT_FALSE(readTable([&](void* buffer, std::uint32_t& size) {
            EXPECT_TRUE(buffer == nullptr || answer == host::insufficientBuffer);
            size = 16;
            ++calls;
            return answer;
        })) << answer;
        EXPECT_EQ(calls, 2) << answer;
    }
}

} // namespace
