// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/FrameMailbox.h"

#include "tests/support/FakeFrame.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>
#include <vector>

using testing::ElementsAre;
using viewer::FrameMailbox;

namespace {

std::uint64_t numberOf(const std::shared_ptr<OrvCPP::Frame>& frame) {
    return static_cast<const FakeFrame&>(*frame).id;
}

TEST(FrameMailbox, keepsTheLatestFrameAndGivesTheOthersBack) {
    std::vector<std::uint64_t> givenBack;
    int announcements = 0;
    FrameMailbox mailbox(
        1, [&](const auto& frame) { givenBack.push_back(numberOf(frame)); },
        [&] { ++announcements; });
    for (std::uint64_t number = 1; number <= 3; ++number)
        mailbox.FrameReceived(std::make_shared<FakeFrame>(number));
    EXPECT_EQ(announcements, 1);
    EXPECT_THAT(givenBack, ElementsAre(1, 2));
    EXPECT_EQ(numberOf(mailbox.take()), 3U);
    EXPECT_EQ(mailbox.take(), nullptr);
    EXPECT_EQ(mailbox.statistics().receivedFrames, 3U);
    EXPECT_EQ(mailbox.statistics().lostFrames, 0);

    mailbox.FrameReceived(std::make_shared<FakeFrame>(6));
    EXPECT_EQ(announcements, 2);
    EXPECT_EQ(numberOf(mailbox.take()), 6U);
    EXPECT_EQ(mailbox.statistics().lostFrames, 2);
    EXPECT_THAT(givenBack, ElementsAre(1, 2));
}

TEST(FrameMailbox, losesNoFrameBetweenTwoThreads) {
    constexpr std::uint64_t frames = 20000;
    std::uint64_t givenBack = 0;
    std::atomic<bool> isAnnounced{false};
    std::atomic<bool> isOver{false};
    FrameMailbox mailbox(
        1, [&](const auto&) { ++givenBack; }, [&] { EXPECT_FALSE(isAnnounced.exchange(true)); });
    std::thread camera([&] {
        for (std::uint64_t number = 1; number <= frames; ++number)
            mailbox.FrameReceived(std::make_shared<FakeFrame>(number));
        isOver = true;
    });
    std::uint64_t taken = 0;
    std::uint64_t last = 0;
    while (!isOver || isAnnounced) {
        if (!isAnnounced.exchange(false)) {
            std::this_thread::yield();
        } else if (const auto frame = mailbox.take()) {
            EXPECT_GT(numberOf(frame), last);
            last = numberOf(frame);
            ++taken;
        }
    }
    camera.join();
    EXPECT_EQ(taken + givenBack, frames);
    EXPECT_EQ(last, frames);
}

} // namespace
