// SPDX-License-Identifier: BSD-3-Clause
#include "engine/BandwidthPlan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

namespace {

using Outcome = BandwidthPlan::Outcome;
using Limits = std::vector<std::int64_t>;
using Claims = std::vector<BandwidthClaim>;

std::int64_t floorOf(const BandwidthClaim& claim) {
    return claim.wished > 0 ? claim.range.atOrAbove(claim.wished) : claim.range.minimum();
}

std::int64_t mostOf(const BandwidthClaim& claim) {
    return std::max(claim.range.atOrBelow(claim.wanted), floorOf(claim));
}

std::int64_t sumOf(const Limits& limits) {
    return std::accumulate(limits.begin(), limits.end(), std::int64_t{0});
}

/// The rule itself, one step at a time: the poorest takes its next step, or stops for good.
Limits dividedStepByStep(std::int64_t available, const Claims& claims) {
    Limits limits;
    for (const auto& claim : claims)
        limits.push_back(floorOf(claim));
    std::vector<bool> hasStopped(claims.size());
    const auto levelAfterStep = [&](std::size_t i) {
        return static_cast<double>(limits[i] + claims[i].range.increment()) / claims[i].weight;
    };
    while (true) {
        std::size_t next = claims.size();
        for (std::size_t i = 0; i < claims.size(); ++i) {
            if (hasStopped[i] || limits[i] >= mostOf(claims[i]))
                continue;
            if (next == claims.size() || std::pair(levelAfterStep(i), claims[i].id) <
                                             std::pair(levelAfterStep(next), claims[next].id))
                next = i;
        }
        if (next == claims.size())
            return limits;
        const std::int64_t step = claims[next].range.increment();
        if (sumOf(limits) + step <= available)
            limits[next] += step;
        else
            hasStopped[next] = true;
    }
}

/// Each camera has its weight's part of the highest level at which all fit, without steps.
std::vector<double> filledByBisection(std::int64_t available, const Claims& claims) {
    const auto filledTo = [&claims](double level) {
        std::vector<double> limits;
        for (const BandwidthClaim& claim : claims)
            limits.push_back(std::clamp(level * claim.weight, static_cast<double>(floorOf(claim)),
                                        static_cast<double>(mostOf(claim))));
        return limits;
    };
    double low = 0;
    double high = 1e12;
    for (int i = 0; i < 200; ++i) {
        const double level = (low + high) / 2;
        const std::vector<double> limits = filledTo(level);
        const double sum = std::accumulate(limits.begin(), limits.end(), 0.0);
        (sum <= static_cast<double>(available) ? low : high) = level;
    }
    return filledTo(low);
}

/// Weights are powers of two, so that equal quotients are equal as doubles.
Claims randomClaims(std::mt19937& random, std::int64_t scale) {
    const auto upTo = [&random](std::int64_t most) {
        return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(most + 1));
    };
    Claims claims;
    for (std::int64_t count = 1 + upTo(7); count > 0; --count) {
        const std::int64_t minimum = upTo(3) == 0 ? upTo(scale / 3) : upTo(scale / 50);
        const std::int64_t maximum = minimum + upTo(scale);
        const std::int64_t increment = 1 + (upTo(2) == 0 ? upTo(scale / 5) : upTo(scale / 100));
        const std::int64_t wished = upTo(5) == 0 ? upTo(maximum) : 0;
        claims.push_back({"camera " + std::to_string(count),
                          {minimum, maximum, increment},
                          upTo(scale),
                          wished,
                          std::ldexp(1.0, static_cast<int>(upTo(3)) - 1)});
    }
    return claims;
}

class RandomClaims : public testing::TestWithParam<std::int64_t> {
protected:
    /// Calls \p check with thousands of sets of claims and what is available.
    template <typename Check> static void forEach(Check check) {
        std::mt19937 random(7);
        for (int i = 0; i < 4000 && !HasFailure(); ++i) {
            SCOPED_TRACE(i);
            const Claims claims = randomClaims(random, GetParam());
            const auto available =
                static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(3 * GetParam()));
            check(available, claims, random);
        }
    }
};

TEST_P(RandomClaims, areFeasibleWhateverTheirOrderWheneverAnythingIs) {
    int divided = 0;
    forEach([&](std::int64_t available, Claims claims, std::mt19937& random) {
        const BandwidthPlan plan = divideBandwidth(available, claims);
        std::int64_t minima = 0;
        std::int64_t floors = 0;
        for (std::size_t i = 0; i < claims.size(); ++i) {
            minima += claims[i].range.minimum();
            floors += floorOf(claims[i]);
            EXPECT_EQ(claims[i].range.atOrBelow(plan.limits[i]), plan.limits[i]);
            EXPECT_GE(plan.limits[i], claims[i].range.minimum());
        }
        EXPECT_EQ(plan.outcome, floors <= available   ? Outcome::Divided
                                : minima <= available ? Outcome::WishesDoNotFit
                                                      : Outcome::MinimaDoNotFit);
        EXPECT_EQ(plan.minima, static_cast<double>(minima));
        EXPECT_EQ(plan.floors, static_cast<double>(floors));
        EXPECT_EQ(sumOf(plan.limits) <= available, minima <= available);
        divided += plan.outcome == Outcome::Divided ? 1 : 0;

        Claims shuffled = claims;
        std::shuffle(shuffled.begin(), shuffled.end(), random);
        const Limits limits = divideBandwidth(available, shuffled).limits;
        for (std::size_t i = 0; i < claims.size(); ++i) {
            const auto same = std::find_if(shuffled.begin(), shuffled.end(),
                                           [&](const auto& it) { return it.id == claims[i].id; });
            EXPECT_EQ(limits[static_cast<std::size_t>(same - shuffled.begin())], plan.limits[i]);
        }
    });
    EXPECT_GT(divided, 1000);
}

TEST_P(RandomClaims, leaveNoStepThatOnlyRicherOnesWouldLose) {
    forEach([](std::int64_t available, const Claims& claims, std::mt19937&) {
        const BandwidthPlan plan = divideBandwidth(available, claims);
        if (plan.outcome != Outcome::Divided)
            return;
        const auto left = static_cast<double>(available - sumOf(plan.limits));
        for (std::size_t i = 0; i < claims.size(); ++i) {
            EXPECT_LE(plan.limits[i], mostOf(claims[i]));
            const std::int64_t raised = plan.limits[i] + claims[i].range.increment();
            if (raised > mostOf(claims[i]))
                continue;
            const double level = static_cast<double>(raised) / claims[i].weight;
            double takable = left;
            for (std::size_t j = 0; j < claims.size(); ++j) {
                const double kept =
                    std::max(level * claims[j].weight, static_cast<double>(floorOf(claims[j])));
                if (j != i)
                    takable += std::max(0.0, static_cast<double>(plan.limits[j]) - kept);
            }
            EXPECT_LT(takable, static_cast<double>(claims[i].range.increment()));
        }
    });
}

/// Few enough for one step at a time.
class ClaimsOfFewSteps : public RandomClaims {};

TEST_P(ClaimsOfFewSteps, getWhatTheRuleGivesStepByStep) {
    forEach([](std::int64_t available, const Claims& claims, std::mt19937&) {
        const BandwidthPlan plan = divideBandwidth(available, claims);
        if (plan.outcome != Outcome::Divided)
            return;
        EXPECT_EQ(plan.limits, dividedStepByStep(available, claims));
    });
}

TEST_P(RandomClaims, getWhatWaterFillingGivesInStepsOfOneByte) {
    forEach([](std::int64_t available, Claims claims, std::mt19937&) {
        for (BandwidthClaim& claim : claims)
            claim.range = {claim.range.minimum(), claim.range.maximum(), 1};
        const BandwidthPlan plan = divideBandwidth(available, claims);
        if (plan.outcome != Outcome::Divided)
            return;
        const std::vector<double> filled = filledByBisection(available, claims);
        for (std::size_t i = 0; i < claims.size(); ++i) {
            // What one camera's last step leaves goes to another.
            const auto oneStepOfEach = static_cast<double>(claims.size());
            EXPECT_NEAR(static_cast<double>(plan.limits[i]), filled[i], oneStepOfEach);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Scale, ClaimsOfFewSteps, testing::Values(40, 2000),
                         testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Scale, RandomClaims, testing::Values(40, 2000, 1'250'000'000),
                         testing::PrintToStringParamName());

TEST(BandwidthPlan, takesWhatACameraReports) {
    const auto most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(divideBandwidth(100, {}).limits, Limits());
    EXPECT_EQ(divideBandwidth(-5, {{"a", {0, 9, 1}, 9}}).limits, Limits{0});
    EXPECT_EQ(divideBandwidth(-5, {}).outcome, Outcome::MinimaDoNotFit);
    EXPECT_EQ(divideBandwidth(100, {{"a", {0, most, 1}, most}, {"b", {0, most, 3}, most}}).limits,
              (Limits{52, 48}));
    EXPECT_EQ(divideBandwidth(100, {{"a", {most, most, 1}, 5}, {"b", {most, most, 1}, 5}}).outcome,
              Outcome::MinimaDoNotFit);
    EXPECT_EQ(divideBandwidth(90, {{"a", {1, 99, 1}, 99, 0, 2}, {"b", {1, 99, 1}, 99}}).limits,
              (Limits{60, 30}));
    EXPECT_EQ(divideBandwidth(90, {{"a", {1, 99, 1}, 9, 61}, {"b", {1, 99, 2}, 99}}).limits,
              (Limits{61, 29}));
}

} // namespace
