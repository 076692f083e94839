// SPDX-License-Identifier: BSD-3-Clause
#include "features/BandwidthLimit.h"
#include "tests/engine/CameraFixture.h"

#include <limits>

namespace {

using testing::ElementsAre;

constexpr auto largest = std::numeric_limits<std::int64_t>::max();

struct BandwidthCase {
    std::uint64_t value;
    std::uint64_t requested;
    std::int64_t minimum;
    std::int64_t maximum;
    std::int64_t increment;
    std::int64_t written;
    AutosetStatus status;
};

class SetBandwidth : public testing::TestWithParam<BandwidthCase> {};

TEST_P(SetBandwidth, writesAndClassifies) {
    const BandwidthCase& p = GetParam();
    HandlerWithFakes fakes;
    fakes.features->putRange("DeviceLinkThroughputLimit", std::int64_t{5}, p.minimum, p.maximum,
                             p.increment);
    fakes.features->put("AcquisitionFrameRateLimit", 12.5);
    EXPECT_EQ(fakes.handler.setBandwidth(p.value, p.requested), p.written);
    EXPECT_THAT(fakes.features->writtenIntegers(), ElementsAre(p.written));
    EXPECT_EQ(fakes.handler.getAutosetStatus(), p.status);
    EXPECT_EQ(fakes.features->reads["DeviceLinkThroughputLimit"], 1);
    EXPECT_THAT(
        fakes.log.lines(),
        ElementsAre("Info:" + cameraText + ": DeviceLinkThroughputLimit set to " +
                        std::to_string(p.written),
                    "Info:" + cameraText + ": AcquisitionFrameRate after optimization 12.500000"));
}

constexpr auto below = AutosetStatus::BelowRequested;
constexpr auto reached = AutosetStatus::RequestedReached;
constexpr auto clamped = AutosetStatus::ClampedToMaximum;

INSTANTIATE_TEST_SUITE_P(
    , SetBandwidth,
    testing::Values(
        // The remainder is added, whatever the next multiple is.
        BandwidthCase{12'345'600, 12'345'600, 0, 100'000'000, 1000, 12'346'200, reached},
        BandwidthCase{12'345'600, 12'346'201, 0, 100'000'000, 1000, 12'346'200, below},
        BandwidthCase{12'345'000, 12'345'000, 0, 100'000'000, 1000, 12'345'000, reached},
        BandwidthCase{0, 1, 1'000'000, 100'000'000, 1, 1'000'000, reached},
        BandwidthCase{0, 2'000'000, 1'000'000, 100'000'000, 1, 1'000'000, below},
        BandwidthCase{1'000'000, 5, 1'000'000, 100'000'000, 1, 1'000'000, reached},
        BandwidthCase{100'000'000, 5, 0, 100'000'000, 1, 100'000'000, clamped},
        BandwidthCase{99'999'999, 5, 0, 100'000'000, 60'000'000, 100'000'000, clamped},
        BandwidthCase{std::numeric_limits<std::uint64_t>::max(), 5, 0, 100, 7, 100, clamped},
        // No known increment, no known maximum, no known minimum.
        BandwidthCase{1234, 1234, 0, 5000, 0, 1234, reached},
        BandwidthCase{1234, 1234, 0, 5000, -3, 1234, reached},
        BandwidthCase{1234, 2000, 0, 0, 1, 1234, below},
        BandwidthCase{1234, 1234, 0, -1, 1, 1234, reached},
        BandwidthCase{std::numeric_limits<std::uint64_t>::max(), 5, 0, 0, 1000, largest, reached}));

TEST(CameraHandlerBandwidth, requestOfNothingChangesNothing) {
    HandlerWithFakes fakes;
    fakes.features->putRange("DeviceLinkThroughputLimit", std::int64_t{5}, std::int64_t{0},
                             std::int64_t{100});
    EXPECT_EQ(fakes.handler.setBandwidth(50, 0), 0);
    EXPECT_TRUE(fakes.features->written.empty());
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::NotSet);
}

TEST(CameraHandlerBandwidth, failedWriteIsNeitherLoggedNorReached) {
    HandlerWithFakes fakes;
    fakes.features->putRange("DeviceLinkThroughputLimit", std::int64_t{5}, std::int64_t{0},
                             std::int64_t{100});
    fakes.features->put("AcquisitionFrameRate", -3.0);
    fakes.features->refuses = true;
    EXPECT_EQ(fakes.handler.setBandwidth(50, 50), 5);
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::NotSet);
    EXPECT_THAT(
        fakes.log.lines(),
        ElementsAre("Info:" + cameraText + ": AcquisitionFrameRate after optimization -1.000000"));
}

TEST(CameraHandlerBandwidth, refusedOffItsStepsItGetsTheStepBelow) {
    HandlerWithFakes fakes;
    fakes.features->putRange("DeviceLinkThroughputLimit", std::int64_t{1500}, std::int64_t{500},
                             std::int64_t{9000}, std::int64_t{1000});
    fakes.features->accepts = [](std::int64_t value) {
        return value % 1000 == 500;
    };
    EXPECT_EQ(fakes.handler.setBandwidth(4100, 4200), 3500);
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::BelowRequested);
    EXPECT_EQ(fakes.handler.setBandwidth(7505, 7505), 7500);
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::RequestedReached);
    EXPECT_EQ(fakes.handler.setBandwidth(9100, 9100), 8500);
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::ClampedToMaximum);
    EXPECT_EQ(fakes.handler.setBandwidth(5250, 5250), 5500);
    // Only the first time is more than one value tried.
    EXPECT_EQ(fakes.features->refused, 1);
    EXPECT_THAT(fakes.features->writtenIntegers(), ElementsAre(3500, 7500, 8500, 5500));
    EXPECT_THAT(fakes.log.lines(), testing::Contains("Info:" + cameraText +
                                                     ": DeviceLinkThroughputLimit set to 8500"));
    EXPECT_EQ(fakes.handler.setBandwidth(8990, 9100), 8500);
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::ClampedToMaximum);
    EXPECT_EQ(fakes.handler.setBandwidth(8490, 9100), 7500) << "short of the highest step";
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::BelowRequested);
    // Steps may take off half a percent of a request, but not of a share that is short of it.
    fakes.features->putRange("DeviceLinkThroughputLimit", std::int64_t{1500}, std::int64_t{500},
                             std::int64_t{2'000'000}, std::int64_t{1000});
    EXPECT_EQ(fakes.handler.setBandwidth(100'000, 100'000), 99'500);
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::RequestedReached);
    EXPECT_EQ(fakes.handler.setBandwidth(100'001, 100'001), 99'500);
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::BelowRequested);
    EXPECT_EQ(fakes.handler.setBandwidth(1'000'300, 1'000'400), 999'500) << "not 1,000,500";
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::BelowRequested);
}

TEST(BandwidthLimit, writesNoStepInPlaceOfAValueOutOfRange) {
    const auto features = std::make_shared<FakeFeatureController>();
    features->putRange("DeviceLinkThroughputLimit", std::int64_t{1500}, std::int64_t{500},
                       std::int64_t{9000}, std::int64_t{1000});
    features->accepts = [](std::int64_t value) {
        return value % 1000 == 500;
    };
    BandwidthLimit limit(features);
    ASSERT_TRUE(limit.find());
    limit.read();
    for (const std::int64_t value : {499, 9001})
        EXPECT_EQ(limit.write(value), std::nullopt) << value;
    EXPECT_THAT(features->written, testing::IsEmpty());
    features->features.clear();
    EXPECT_FALSE(limit.find());
}

TEST(BandwidthLimit, warnsOfEveryModeButOn) {
    const std::pair<FeatureValue, bool> cases[] = {{std::string("Off"), true},
                                                   {std::string("Auto"), true},
                                                   {std::string("On"), false},
                                                   {std::int64_t{0}, false}};
    for (const auto& [mode, isWarned] : cases) {
        const auto features = std::make_shared<FakeFeatureController>();
        const CapturedLog log;
        features->put("DeviceLinkThroughputLimit", std::int64_t{1500});
        features->put("DeviceLinkThroughputLimitMode", mode);
        BandwidthLimit limit(features);
        ASSERT_TRUE(limit.find());
        limit.warnWhenOff(true);
        EXPECT_EQ(log.lines().size(), isWarned ? 1U : 0U) << toText(mode);
    }
}

TEST(CameraHandlerBandwidth, limitsOfAnotherTypeCountAsAbsent) {
    HandlerWithFakes fakes;
    fakes.features->putRange("DeviceLinkThroughputLimit", 5.5, 10.0, std::string("many"), true);
    EXPECT_EQ(fakes.handler.getBandwidth(), 0);
    EXPECT_EQ(fakes.handler.setBandwidth(50, 50), 50);
}

TEST(CameraHandlerBandwidth, prefersTheLinkLimit) {
    HandlerWithFakes fakes;
    EXPECT_EQ(fakes.handler.getBandwidth(), 0);
    EXPECT_EQ(fakes.handler.setBandwidth(50, 50), 0);
    const std::string missing =
        "Error:" + cameraText + ": No bandwidth speed related feature found.";
    EXPECT_THAT(fakes.log.lines(), ElementsAre(missing, missing));

    fakes.features->put("StreamBytesPerSecond", std::int64_t{7});
    EXPECT_EQ(fakes.handler.getBandwidth(), 7);
    fakes.features->put("DeviceLinkThroughputLimit", std::int64_t{8});
    EXPECT_EQ(fakes.handler.getBandwidth(), 8);
    EXPECT_EQ(fakes.log.lines().size(), 2U);
}

TEST(CameraHandlerBandwidth, warnsOfUsb2Speed) {
    const auto warned = [](OrvTransportLayerType type, FeatureValue maximum) {
        HandlerWithFakes fakes(type);
        fakes.features->putRange("DeviceLinkThroughputLimit", std::int64_t{5}, std::int64_t{0},
                                 std::move(maximum));
        fakes.handler.checkUsbSpeedLimit();
        EXPECT_LE(fakes.features->reads["DeviceLinkThroughputLimit"], 1);
        return fakes.log.text();
    };
    const auto warning = [](const std::string& speed) {
        return "Warning:Model-0001 (DEV_1): Camera Speed Limit: " + speed +
               " Mbps ( USB 2.0 or lower )\n";
    };
    constexpr auto usb = OrvTransportLayerTypeU3V;
    EXPECT_EQ(warned(usb, std::int64_t{59'999'999}), warning("479"));
    EXPECT_EQ(warned(usb, std::int64_t{1'500'000}), warning("12"));
    EXPECT_EQ(warned(usb, std::int64_t{60'000'000}), "");
    EXPECT_EQ(warned(usb, largest), "");
    EXPECT_EQ(warned(usb, std::int64_t{0}), "");
    EXPECT_EQ(warned(usb, 1.0), "");
    EXPECT_EQ(warned(OrvTransportLayerTypeGEV, std::int64_t{1'500'000}), "");
}

} // namespace
