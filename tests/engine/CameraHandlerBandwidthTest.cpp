// SPDX-License-Identifier: BSD-3-Clause
#include "features/BandwidthLimit.h"
#include "tests/support/CameraFixture.h"

#include <limits>
#include <tuple>

namespace {

using testing::ElementsAre;

constexpr auto largest = std::numeric_limits<std::int64_t>::max();

constexpr auto unlimited = std::numeric_limits<std::uint64_t>::max();
constexpr auto below = AutosetStatus::BelowRequested;
constexpr auto reached = AutosetStatus::RequestedReached;
constexpr auto clamped = AutosetStatus::ClampedToMaximum;

TEST(CameraHandlerBandwidth, isWrittenAndClassified) {
    const struct {
        std::uint64_t value;
        std::uint64_t requested;
        std::int64_t minimum;
        std::int64_t maximum;
        std::int64_t increment;
        std::int64_t written;
        AutosetStatus status;
    } cases[] = {
        // The remainder is added, whatever the next multiple is.
        {12'345'600, 12'345'600, 0, 100'000'000, 1000, 12'346'200, reached},
        {12'345'600, 12'346'201, 0, 100'000'000, 1000, 12'346'200, below},
        {12'345'000, 12'345'000, 0, 100'000'000, 1000, 12'345'000, reached},
        {0, 1, 1'000'000, 100'000'000, 1, 1'000'000, reached},
        {0, 2'000'000, 1'000'000, 100'000'000, 1, 1'000'000, below},
        {1'000'000, 5, 1'000'000, 100'000'000, 1, 1'000'000, reached},
        {100'000'000, 5, 0, 100'000'000, 1, 100'000'000, clamped},
        {99'999'999, 5, 0, 100'000'000, 60'000'000, 100'000'000, clamped},
        {unlimited, 5, 0, 100, 7, 100, clamped},
        // No known increment, no known maximum, no known minimum.
        {1234, 1234, 0, 5000, 0, 1234, reached},
        {1234, 1234, 0, 5000, -3, 1234, reached},
        {1234, 2000, 0, 0, 1, 1234, below},
        {1234, 1234, 0, -1, 1, 1234, reached},
        {unlimited, 5, 0, 0, 1000, largest, reached},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.value);
        HandlerWithFakes fakes;
        fakes.features->putLimit(5, each.minimum, each.maximum, each.increment);
        fakes.features->put("AcquisitionFrameRateLimit", 12.5);
        fakes.features->put("AcquisitionFrameRate", 1.0);
        EXPECT_EQ(fakes.handler.setBandwidth(each.value, each.requested), each.written);
        EXPECT_THAT(fakes.features->writtenIntegers(), ElementsAre(each.written));
        EXPECT_EQ(fakes.handler.getAutosetStatus(), each.status);
        EXPECT_EQ(fakes.features->reads["DeviceLinkThroughputLimit"], 1);
        EXPECT_EQ(fakes.log.text(), infoLine + ": DeviceLinkThroughputLimit set to " +
                                        std::to_string(each.written) + '\n' + infoLine +
                                        ": AcquisitionFrameRate after optimization 12.500000\n");
    }
}

TEST(CameraHandlerBandwidth, keepsItsValueWithoutARequestAndWhenTheWriteFails) {
    HandlerWithFakes fakes;
    fakes.features->putLimit(5, 0, 100);
    fakes.features->put("AcquisitionFrameRate", -3.0);
    EXPECT_EQ(fakes.handler.setBandwidth(50, 0), 0);
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::NotSet);
    EXPECT_EQ(fakes.log.text(), "");
    fakes.features->refuses = true;
    EXPECT_EQ(fakes.handler.setBandwidth(50, 50), 5);
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::NotSet);
    EXPECT_EQ(fakes.log.text(), infoLine + ": AcquisitionFrameRate after optimization -1.000000\n");
    EXPECT_TRUE(fakes.features->written.empty());
}

TEST(CameraHandlerBandwidth, refusedOffItsStepsItGetsTheStepBelow) {
    HandlerWithFakes fakes;
    int tried = 0;
    fakes.features->accepts = [&tried](std::int64_t value) {
        ++tried;
        return value % 1000 == 500;
    };
    const struct {
        std::int64_t maximum;
        std::uint64_t value;
        std::uint64_t requested;
        std::int64_t step;
        AutosetStatus status;
    } cases[] = {
        {9000, 4100, 4200, 3500, below},
        {9000, 7505, 7505, 7500, reached},
        {9000, 9100, 9100, 8500, clamped},
        {9000, 5250, 5250, 5500, reached},
        {9000, 8990, 9100, 8500, clamped},
        {9000, 8490, 9100, 7500, below}, // short of the highest step
        // Steps may take off half a percent of a request, but not of a share that is short of it.
        {2'000'000, 100'000, 100'000, 99'500, reached},
        {2'000'000, 100'001, 100'001, 99'500, below},
        {2'000'000, 1'000'300, 1'000'400, 999'500, below}, // not 1,000,500
    };
    for (const auto& each : cases) {
        fakes.features->putLimit(1500, 500, each.maximum, 1000);
        EXPECT_EQ(fakes.handler.setBandwidth(each.value, each.requested), each.step);
        EXPECT_EQ(fakes.handler.getAutosetStatus(), each.status) << each.value;
        EXPECT_TRUE(fakes.log.has(infoLine + ": DeviceLinkThroughputLimit set to " +
                                  std::to_string(each.step)));
    }
    EXPECT_EQ(tried, 1 + static_cast<int>(std::size(cases)))
        << "only the first time is more than one value tried";

    BandwidthLimit limit(fakes.features);
    ASSERT_TRUE(limit.find());
    limit.read();
    for (const std::int64_t value : {499, 2'000'001})
        EXPECT_EQ(limit.write(value), std::nullopt) << "no step in place of a value out of range";
    fakes.features->features.clear();
    EXPECT_FALSE(limit.find());
}

TEST(CameraHandlerBandwidth, prefersTheLinkLimitOfWhichBoundsOfAnotherTypeCountAsAbsent) {
    HandlerWithFakes fakes;
    EXPECT_EQ(fakes.handler.getBandwidth(), 0);
    EXPECT_EQ(fakes.handler.setBandwidth(50, 50), 0);
    const std::string missing =
        "Error:" + cameraText + ": No bandwidth speed related feature found.";
    fakes.features->put("StreamBytesPerSecond", std::int64_t{7});
    EXPECT_EQ(fakes.handler.getBandwidth(), 7);
    fakes.features->put("DeviceLinkThroughputLimit", std::int64_t{8});
    EXPECT_EQ(fakes.handler.getBandwidth(), 8);
    EXPECT_THAT(fakes.log.lines(), ElementsAre(missing, missing)) << "not once it is found";

    FeatureInfo& limit = fakes.features->put("DeviceLinkThroughputLimit", 5.5);
    limit.minimum = 10.0;
    limit.maximum = std::string("many");
    limit.increment = true;
    EXPECT_EQ(fakes.handler.getBandwidth(), 0);
    EXPECT_EQ(fakes.handler.setBandwidth(50, 50), 50);
}

TEST(CameraHandlerBandwidth, warnsOfUsb2Speed) {
    const auto warning = [](const std::string& speed) {
        return "Warning:" + cameraText + ": Camera Speed Limit: " + speed +
               " Mbps ( USB 2.0 or lower )\n";
    };
    const std::tuple<OrvTransportLayerType, FeatureValue, std::string> cases[] = {
        {usb, std::int64_t{59'999'999}, warning("479")},
        {usb, std::int64_t{1'500'000}, warning("12")},
        {usb, std::int64_t{60'000'000}, ""},
        {usb, largest, ""},
        {usb, std::int64_t{0}, ""},
        {usb, 1.0, ""},
        {OrvTransportLayerTypeGEV, std::int64_t{1'500'000}, ""},
    };
    for (const auto& [type, maximum, text] : cases) {
        HandlerWithFakes fakes(type);
        fakes.features->put("DeviceLinkThroughputLimit", std::int64_t{5}).maximum = maximum;
        fakes.handler.checkUsbSpeedLimit();
        EXPECT_EQ(fakes.log.text(), text) << toText(maximum);
        EXPECT_LE(fakes.features->reads["DeviceLinkThroughputLimit"], 1);
    }
}

} // namespace
