// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/SdkQuery.h"

#include <gmock/gmock.h>

#include <new>

namespace {

using testing::IsEmpty;

/// An SDK object that answers a text or a list of numbers in two calls.
struct Source {
    OrvErrorType firstResult = OrvErrorSuccess;
    OrvErrorType secondResult = OrvErrorSuccess;
    std::string firstText;
    std::string secondText;
    /// Number of the call that throws std::bad_alloc; 0: none.
    int outOfMemory = 0;
    int calls = 0;

    OrvErrorType text(char* buffer, std::uint32_t& length) {
        if (++calls == outOfMemory)
            throw std::bad_alloc();
        const bool isFirst = buffer == nullptr;
        const std::string& text = isFirst ? firstText : secondText;
        if (!isFirst)
            std::copy_n(text.begin(), std::min<std::size_t>(length, text.size()), buffer);
        length = static_cast<std::uint32_t>(text.size());
        return isFirst ? firstResult : secondResult;
    }
};

struct Case {
    const char* name;
    Source source;
    OrvErrorType result;
    /// The text afterwards; "old" before.
    std::string text;
    /// The list afterwards, without any of its old elements.
    std::vector<char> list;
    int calls;
};

const Case cases[] = {
    {"Filled", {0, 0, "abc", "abc"}, 0, "abc", {'a', 'b', 'c'}, 2},
    {"Empty", {0, 0, "", "abc"}, 0, "old", {}, 1},
    {"FirstCallFails", {-12, 0, "abc", "abc"}, -12, "old", {}, 1},
    {"SecondCallFails", {0, -9, "abc", "abc"}, -9, "old", {}, 2},
    {"Shrunk", {0, 0, "abc", "a"}, 0, "a", {'a'}, 2},
    {"LengthGrewUnfilled", {0, 0, "ab", "abc"}, 0, "ab", {'a', 'b'}, 2},
    {"OutOfMemoryAtFirst", {0, 0, "abc", "abc", 1}, -14, "old", {}, 1},
    {"OutOfMemory", {0, 0, "abc", "abc", 2}, -14, "old", {}, 2},
};

TEST(SdkQuery, fillsTextsAndListsInTwoCalls) {
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        Source forText = each.source;
        std::string text = "old";
        EXPECT_EQ(SdkQuery::text(&forText, text, &Source::text), each.result);
        EXPECT_EQ(text, each.text);
        EXPECT_EQ(forText.calls, each.calls);

        Source forList = each.source;
        std::vector<char> list = {'o', 'l', 'd'};
        EXPECT_EQ(SdkQuery::elements(&forList, list, &Source::text), each.result);
        EXPECT_EQ(list, each.list);
        EXPECT_EQ(forList.calls, each.calls);
    }
}

TEST(SdkQuery, leavesAListEmptyWhenMemoryIsShort) {
    struct Heavy {
        Heavy() { throw std::bad_alloc(); }
    };
    Source source{0, 0, "abc", "abc"};
    std::vector<Heavy> list;
    const auto count = [](Source&, Heavy*, std::uint32_t& n) {
        n = 2;
        return OrvErrorType{OrvErrorSuccess};
    };
    EXPECT_EQ(SdkQuery::elements(&source, list, count), OrvErrorResources);
    EXPECT_THAT(list, IsEmpty());
}

} // namespace
