// SPDX-License-Identifier: BSD-3-Clause
#include "tests/engine/CameraFixture.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using testing::ElementsAre;

constexpr double margin = 0.05;
const std::string error = "Error:" + cameraText;

TEST(CameraHandlerPayload, comesFromPixelSizeElseImageSize) {
    using Entry = std::pair<const char*, FeatureValue>;
    struct Case {
        std::vector<Entry> features;
        std::int64_t payload;
    };
    const Entry width{"Width", std::int64_t{641}};
    const Entry height{"Height", std::int64_t{481}};
    const Entry image{"ImageSize", std::int64_t{777}};
    const auto pixel = [](FeatureValue value) {
        return Entry{"PixelSize", std::move(value)};
    };
    const Case cases[] = {
        {{pixel(std::string("Bpp8")), width, height, image}, 641 * 481},
        {{pixel(std::string("Bpp12Packed")), width, height}, 641 * 481 * 12 / 8},
        {{pixel(std::string("Bpp10")), {"Width", std::int64_t{3}}, {"Height", std::int64_t{1}}}, 3},
        {{image}, 777},
        // What cannot be used falls back to the image size.
        {{pixel(std::string("BppX")), width, height, image}, 777},
        {{pixel(std::string("Bpp")), width, height, image}, 777},
        {{pixel(std::string("B")), width, height, image}, 777},
        {{pixel(std::string("Bpp-8")), width, height, image}, 777},
        {{pixel(std::string("Bpp4294967304")), width, height, image}, 777},
        {{pixel(std::int64_t{8}), width, height, image}, 777},
        {{pixel(std::string("Bpp8")), width, {"Height", 481.0}, image}, 777},
    };
    for (const Case& testCase : cases) {
        HandlerWithFakes fakes;
        for (const auto& [name, value] : testCase.features)
            fakes.features->put(name, value);
        EXPECT_EQ(fakes.handler.getPayloadSize(), testCase.payload);
        EXPECT_EQ(fakes.log.text(), "");
    }
}

TEST(CameraHandlerPayload, isNothingWithoutFeatures) {
    const std::string missing = error + ": No pixel or image size related features found.";
    HandlerWithFakes fakes;
    EXPECT_EQ(fakes.handler.getPayloadSize(), 0);
    fakes.features->put("PixelSize", std::string("huge"));
    EXPECT_EQ(fakes.handler.getPayloadSize(), 0);
    fakes.features->put("ImageSize", 1.5);
    EXPECT_EQ(fakes.handler.getPayloadSize(), 0);
    EXPECT_THAT(fakes.log.lines(), ElementsAre(missing, missing, missing));
    fakes.features->put("ImageSize", std::int64_t{-5});
    EXPECT_EQ(fakes.handler.getPayloadSize(), 0);
}

/// A camera whose frame rate is held by its sensor and by its bandwidth over its needs.
struct ModelCamera : HandlerWithFakes {
    ModelCamera(std::int64_t payload, std::int64_t minimum, std::int64_t maximum, double sensorRate,
                double overhead) {
        features->putRange("DeviceLinkThroughputLimit", maximum / 3, minimum, maximum);
        if (payload > 0)
            features->put("ImageSize", payload);
        features->onWrite = [=, target = features.get()] {
            const double bytes = static_cast<double>(std::max<std::int64_t>(payload, 1)) * overhead;
            const double rate = static_cast<double>(target->writtenIntegers().back()) / bytes;
            target->put("AcquisitionFrameRateLimit", std::min(sensorRate, rate));
        };
        features->setFeatureValue(cameraModule, "DeviceLinkThroughputLimit", maximum / 3);
        features->written.clear();
    }

    std::int64_t autoSet() { return handler.autoSet(margin); }
};

using Steps = std::vector<std::int64_t>;

struct SearchCase {
    const char* name;
    std::int64_t payload;
    std::int64_t minimum;
    /// Bytes that the camera sends for each byte of payload.
    double overhead;
    std::int64_t result;
    /// After the maximum and the calculated bandwidth.
    Steps tried;
};

class AutoSetSearch : public testing::TestWithParam<SearchCase> {};

TEST_P(AutoSetSearch, findsTheKnownAnswer) {
    const SearchCase& p = GetParam();
    ModelCamera camera(p.payload, p.minimum, 1'000'000, 100.0, p.overhead);
    EXPECT_EQ(camera.autoSet(), p.result);
    Steps written{1'000'000, p.payload * 100};
    written.insert(written.end(), p.tried.begin(), p.tried.end());
    EXPECT_EQ(camera.features->writtenIntegers(), written);
    EXPECT_EQ(camera.features->reads["DeviceLinkThroughputLimit"], 1);
}

const Steps tenSteps{550'000, 325'000, 212'500, 156'250, 128'125,
                     114'063, 107'032, 103'517, 101'760, 100'882};

INSTANTIATE_TEST_SUITE_P(
    , AutoSetSearch,
    testing::Values(SearchCase{"SufficesAtOnce", 1000, 10, 1.0, 101'760, tenSteps},
                    SearchCase{"HeldToTheMinimum", 1000, 150'000, 1.0, 150'000, tenSteps},
                    SearchCase{"RepeatsOneStep", 1000, 10, 1.3, 142'188,
                               Steps{550'000, 325'000, 212'500, 156'250, 128'125, 142'188}},
                    SearchCase{"EndsWithRepeatedSteps", 1000, 10, 1.032, 104'395,
                               Steps{550'000, 325'000, 212'500, 156'250, 128'125, 114'063, 107'032,
                                     103'517, 101'760, 102'639}},
                    SearchCase{
                        "ClimbsBeforeItTurns", 1000, 10, 8.0, 796'094,
                        Steps{550'000, 775'000, 887'500, 831'250, 803'125, 789'063, 796'094}},
                    SearchCase{"TakesWhatBarelyMissesTheTarget", 1000, 10, 5.546, 553'516,
                               Steps{550'000, 775'000, 662'500, 606'250, 578'125, 564'063, 557'032,
                                     553'517, 551'760}},
                    SearchCase{"StartsAtZeroWithoutPayload", 0, 50, 1000.0, 109'375,
                               Steps{500'000, 250'000, 125'000, 62'500, 93'750, 109'375}}),
    [](const auto& suite) { return suite.param.name; });

TEST(CameraAutoSet, judgesRatesByTheTolerance) {
    const struct {
        /// What the camera reports after each write; the last one again and again.
        std::vector<double> rates;
        std::int64_t result;
        Steps written;
    } cases[] = {
        // Half a percent off counts as missed, on either side.
        {{200.0, 199.0, 202.0, 199.0, 200.0, 199.0},
         887'500,
         {1'000'000, 100'000, 550'000, 775'000, 887'500, 831'250}},
        // A repeated step that misses the target does not end the search with its own value.
        {{200.0, 199.0, 199.4, 198.0, 198.8},
         550'000,
         {1'000'000, 100'000, 550'000, 325'000, 437'500}},
    };
    for (const auto& expected : cases) {
        ModelCamera camera(500, 10, 1'000'000, 200.0, 1.0);
        camera.features->onWrite = [&] {
            const std::size_t last = expected.rates.size() - 1;
            camera.features->put(
                "AcquisitionFrameRateLimit",
                expected.rates[std::min(camera.features->written.size() - 1, last)]);
        };
        EXPECT_EQ(camera.autoSet(), expected.result);
        EXPECT_EQ(camera.features->writtenIntegers(), expected.written);
    }
}

TEST(CameraAutoSet, staysBelowTheMaximumWhenTheTargetIsNeverReachedAgain) {
    constexpr std::int64_t odd = 1'000'001;
    ModelCamera camera(1000, 10, odd, 100.0, 1.0);
    camera.features->onWrite = [&] {
        camera.features->put("AcquisitionFrameRateLimit",
                             camera.features->writtenIntegers().back() == odd ? 100.0 : 50.0);
    };
    EXPECT_EQ(camera.autoSet(), 999'118 - 2 * 439);
    EXPECT_EQ(camera.features->written.size(), 12U);
}

TEST(CameraAutoSet, tellsEveryStep) {
    ModelCamera camera(1000, 10, 1'000'000, 100.0, 1.3);
    camera.features->put("AcquisitionFrameRateEnable", true);
    camera.autoSet();
    const std::string info = "Info:" + cameraText;
    EXPECT_THAT(
        camera.log.lines(),
        ElementsAre(
            info + ": AcquisitionFrameRate before optimization 100.000000",
            info + ": 'AcquisitionFrameRateEnable' is 'true', the user-set AcquisitionFrameRate "
                   "will be used for optimization.",
            info + ": AcquisitionFrameRate max. possible 100.000000",
            "Debug:Calculated bandwidth:100000 current frame rate: 76.923077",
            "Debug:Max frameRate: 100.000000 max. bandwidth: 1000000",
            "Debug:Deviation: 0.000000 Current frameRate: 100.000000  stepBW: 450000 "
            "bandwidth:550000",
            "Debug:Switch direction",
            "Debug:Deviation: -0.000000 Current frameRate: 100.000000  stepBW: 225000 "
            "bandwidth:325000",
            "Debug:Deviation: -0.000000 Current frameRate: 100.000000  stepBW: 112500 "
            "bandwidth:212500",
            "Debug:Deviation: -0.000000 Current frameRate: 100.000000  stepBW: 56250 "
            "bandwidth:156250",
            "Debug:Deviation: -0.014423 Current frameRate: 98.557692  stepBW: 28125 "
            "bandwidth:128125",
            "Debug:Repeat 1/2 of last step, from bandwidth: 156250",
            "Debug:Deviation: -0.000000 Current frameRate: 100.000000  stepBW: 14062 "
            "bandwidth:142188",
            "Debug:Autoset completed in 6 steps."));
}

TEST(CameraAutoSet, tellsWhenItSkipsTheSearch) {
    ModelCamera camera(1000, 10, 105'000, 100.0, 1.0);
    camera.features->put("AcquisitionFrameRateEnable", false);
    camera.features->put("AcquisitionFrameRateLimit", 0.0);
    EXPECT_EQ(camera.autoSet(), 100'000);
    EXPECT_EQ(camera.features->writtenIntegers().back(), 105'000);
    EXPECT_THAT(
        camera.log.lines(),
        ElementsAre("Info:" + cameraText + ": AcquisitionFrameRate before optimization 0.000000",
                    "Info:" + cameraText + ": AcquisitionFrameRate max. possible 100.000000",
                    "Debug:Calculated bandwidth 100000 + camera safety margin > maximum "
                    "bandwidth, skip iteration."));
}

TEST(CameraAutoSet, failsWithoutFrameRate) {
    const std::string internal = error + ": current AcquisitionFrameRate < 0, internal error "
                                         "occured.";
    for (const FeatureValue& rate :
         {FeatureValue(-2.0), FeatureValue(std::int64_t{30}), FeatureValue(std::nan(""))}) {
        HandlerWithFakes fakes;
        fakes.features->put("AcquisitionFrameRate", rate);
        EXPECT_EQ(fakes.handler.autoSet(margin), 0);
        EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::NotSet);
        EXPECT_EQ(fakes.log.lines().back(), internal);
    }
    HandlerWithFakes fakes;
    EXPECT_EQ(fakes.handler.autoSet(margin), 0);
    EXPECT_THAT(
        fakes.log.lines(),
        ElementsAre(error + ": No acquisition frame rate related feature found.", internal));
}

TEST(CameraAutoSet, failsWithoutBandwidthFeature) {
    HandlerWithFakes fakes;
    fakes.features->put("AcquisitionFrameRateLimit", 10.0);
    EXPECT_EQ(fakes.handler.autoSet(margin), 0);
    EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::NotSet);
    EXPECT_EQ(fakes.log.lines().back(), error + ": No bandwidth speed related feature found.");
}

TEST(CameraAutoSet, climbsToAboutTheMaximumWithoutATarget) {
    for (const FeatureValue& target :
         {FeatureValue(0.0), FeatureValue(-1e300), FeatureValue(std::nan("")),
          FeatureValue(std::int64_t{30})}) {
        ModelCamera camera(1000, 10, 900'000, 100.0, 1.0);
        camera.features->onWrite = [&] {
            camera.features->put("AcquisitionFrameRateLimit", target);
        };
        EXPECT_EQ(camera.autoSet(), 899'118 - 2 * 439);
        EXPECT_EQ(camera.features->written.size(), 12U);
    }
}

TEST(CameraAutoSet, writesNoUnknownMaximum) {
    HandlerWithFakes fakes;
    fakes.features->putRange("StreamBytesPerSecond", std::int64_t{5}, std::int64_t{0}, 1e6);
    fakes.features->put("AcquisitionFrameRate", 10.0);
    fakes.features->put("ImageSize", std::int64_t{1000});
    EXPECT_EQ(fakes.handler.autoSet(margin), 10'000);
    EXPECT_TRUE(fakes.features->written.empty());
}

TEST(CameraAutoSet, survivesExtremeNumbers) {
    using Limits = std::numeric_limits<std::int64_t>;
    constexpr auto largest = Limits::max();
    for (const double overhead : {1.0, 1e15}) {
        ModelCamera camera(1000, 10, largest, 100.0, overhead);
        EXPECT_GE(camera.autoSet(), 10);
        EXPECT_LE(camera.features->written.size(), 13U);
    }
    for (const double anyMargin : {margin, -2.0, std::nan("")}) {
        for (const std::int64_t maximum : {largest, std::int64_t{1}, Limits::min()}) {
            ModelCamera camera(largest, 10, maximum, 100.0, 1e-10);
            camera.features->put("AcquisitionFrameRateLimit", 100.0);
            EXPECT_GE(camera.handler.autoSet(anyMargin), 0);
            EXPECT_EQ(camera.features->written.empty(), maximum < 0);
        }
    }
}

} // namespace
