// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/TwiceAsked.h"

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
    /// Number of the call that runs out of memory.
    int outOfMemory = 0;
    int calls = 0;

    OrvErrorType text(char* buffer, std::uint32_t& length) {
        if (++calls == outOfMemory)
            throw std::bad_alloc();
        const std::string& text = buffer == nullptr ? firstText : secondText;
        if (buffer == nullptr) {
            length = static_cast<std::uint32_t>(text.size());
            return firstResult;
        }
        std::copy_n(text.begin(), std::min<std::size_t>(length, text.size()), buffer);
        length = static_cast<std::uint32_t>(text.size());
        return secondResult;
    }
};

struct Case {
    const char* name;
    Source source;
    OrvErrorType result;
    /// "old" is what the output was before.
    std::string text;
    /// The same characters as a list, which never keeps what it was before.
    std::vector<char> list;
    int calls;
};

class TwiceAskedTest : public testing::TestWithParam<Case> {};

TEST_P(TwiceAskedTest, Text) {
    Source source = GetParam().source;
    std::string text = "old";
    EXPECT_EQ(TwiceAsked::text(&source, text, &Source::text), GetParam().result);
    EXPECT_EQ(text, GetParam().text);
    EXPECT_EQ(source.calls, GetParam().calls);
}

TEST_P(TwiceAskedTest, List) {
    Source source = GetParam().source;
    std::vector<char> list = {'o', 'l', 'd'};
    EXPECT_EQ(TwiceAsked::elements(&source, list, &Source::text), GetParam().result);
    EXPECT_EQ(list, GetParam().list);
    EXPECT_EQ(source.calls, GetParam().calls);
}

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

INSTANTIATE_TEST_SUITE_P(Answers, TwiceAskedTest, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

TEST(TwiceAskedList, IsEmptyWhenItsBufferCannotBeAllocated) {
    struct Heavy {
        Heavy() { throw std::bad_alloc(); }
    };
    Source source{0, 0, "abc", "abc"};
    std::vector<Heavy> list;
    const auto count = [](Source&, Heavy*, std::uint32_t& n) {
        n = 2;
        return OrvErrorType{OrvErrorSuccess};
    };
    EXPECT_EQ(TwiceAsked::elements(&source, list, count), OrvErrorResources);
    EXPECT_THAT(list, IsEmpty());
}

} // namespace
