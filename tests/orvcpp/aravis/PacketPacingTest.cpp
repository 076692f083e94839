// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/PacketPacing.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>

namespace {

using namespace testing;
using orv::aravis::PacingSettings;
using orv::aravis::PacketPacing;

constexpr std::int64_t gigabit = 125'000'000;
const orv::IntegerLimits anyDelay{0, 0xFFFFFFFF, 1};

/// The rate by the definition of the delay.
double rate(const PacingSettings& s, std::int64_t delay) {
    const auto bytes = static_cast<double>(s.packetBytes);
    return bytes / (bytes / static_cast<double>(s.linkSpeed) +
                    static_cast<double>(delay) / static_cast<double>(s.ticksPerSecond));
}

TEST(PacketPacing, neverExceedsALimitAndReadsItBack) {
    const PacingSettings cases[] = {
        {1400, 1'000'000'000, gigabit, anyDelay},
        {9000, 125'000'000, gigabit, anyDelay},
        {1500, 62'500'000, gigabit, {0, 1'000'000, 8}},
        {1500, 31'250'000, gigabit, {12, 100'001, 7}},
        {576, 1'000'000, gigabit, anyDelay},
        {8000, 1'000'000'000, 1'250'000'000, {100, 50'000'000, 100}},
    };
    for (const PacingSettings& settings : cases) {
        const auto pacing = PacketPacing::of(settings);
        ASSERT_TRUE(pacing);
        const auto [minimum, maximum, increment] = pacing->limits();
        SCOPED_TRACE(std::to_string(settings.ticksPerSecond) + " ticks, increment " +
                     std::to_string(increment));
        EXPECT_EQ((maximum - minimum) % increment, 0);
        std::mt19937_64 random(1);
        const auto steps = static_cast<std::uint64_t>((maximum - minimum) / increment);
        for (std::uint64_t i = 0; i < 2000; ++i) {
            const std::uint64_t step = i < 100 ? i : i < 200 ? steps + 100 - i : random();
            const std::int64_t limit =
                minimum + static_cast<std::int64_t>(step % (steps + 1)) * increment;
            const std::int64_t delay = pacing->delayFor(limit);
            ASSERT_GE(delay, settings.delay.minimum);
            ASSERT_LE(delay, settings.delay.maximum);
            ASSERT_EQ((delay - settings.delay.minimum) % settings.delay.increment, 0);
            ASSERT_LE(rate(settings, delay), static_cast<double>(limit) + 0.1);
            ASSERT_EQ(pacing->limitOf(delay), limit);
            // No longer than needed.
            const std::int64_t shorter = delay - settings.delay.increment;
            ASSERT_TRUE(shorter < settings.delay.minimum ||
                        rate(settings, shorter) > static_cast<double>(limit) - 0.1);
        }
    }
}

TEST(PacketPacing, hasAFineGridThatEndsAtTheSpeedOfTheLink) {
    const auto fine = PacketPacing::of({1400, 1'000'000'000, gigabit, anyDelay});
    EXPECT_EQ(fine->limits().maximum, gigabit);
    EXPECT_LT(fine->limits().minimum, 100'000);
    EXPECT_EQ(fine->limits().increment, 12'000);
    EXPECT_EQ(fine->delayFor(gigabit), 0);
    // 1400 bytes take 11.2 us on the link, and 28 us at 50 MB/s.
    EXPECT_EQ(fine->delayFor(50'000'000), 16'800);
    EXPECT_EQ(fine->limitOf(16'800), 50'000'000);
    // 1,048,576 bytes in 779 packets of 1352 or more bytes, and leader and trailer.
    EXPECT_NEAR(fine->framesPerSecond(16'800, 1'048'576), 1e6 / 28 / 778, 0.2);
}

TEST(PacketPacing, isNotPossibleWithoutTicksSizeSpeedOrRange) {
    const PacingSettings good{1400, 1'000'000'000, gigabit, anyDelay};
    const auto with = [&](auto member, auto value) {
        PacingSettings settings = good;
        settings.*member = value;
        return PacketPacing::of(settings).has_value();
    };
    EXPECT_TRUE(PacketPacing::of(good));
    EXPECT_FALSE(with(&PacingSettings::ticksPerSecond, std::int64_t{36}));
    for (const std::int64_t wrong : {std::int64_t{0}, std::int64_t{-1}, INT64_MAX}) {
        EXPECT_FALSE(with(&PacingSettings::packetBytes, wrong));
        EXPECT_FALSE(with(&PacingSettings::ticksPerSecond, wrong));
        EXPECT_FALSE(with(&PacingSettings::linkSpeed, wrong));
    }
    for (const orv::IntegerLimits& wrong :
         {orv::IntegerLimits{0, 0, 1}, {-5, 10, 1}, {0, 10, 0}, {10, 5, 1}})
        EXPECT_FALSE(with(&PacingSettings::delay, wrong));
}

} // namespace
