// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/CameraFixture.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using testing::ElementsAre;

constexpr double cameraMargin = 0.05;

TEST(CameraHandlerPayload, comesFromPixelSizeElseImageSize) {
    const std::string missing = errorLine + ": No pixel or image size related features found.";
    HandlerWithFakes fakes;
    const auto payload = [&](FeatureValue pixelSize) {
        fakes.features->put("PixelSize", std::move(pixelSize));
        return fakes.handler.getPayloadSize();
    };
    EXPECT_EQ(fakes.handler.getPayloadSize(), 0);
    EXPECT_EQ(payload(std::string("huge")), 0);
    fakes.features->put("ImageSize", 1.5);
    EXPECT_EQ(fakes.handler.getPayloadSize(), 0);
    EXPECT_THAT(fakes.log.lines(), ElementsAre(missing, missing, missing));

    fakes.log.clear();
    fakes.features->put("ImageSize", std::int64_t{-5});
    EXPECT_EQ(fakes.handler.getPayloadSize(), 0);
    fakes.features->put("ImageSize", std::int64_t{777});
    fakes.features->put("Width", std::int64_t{641});
    fakes.features->put("Height", std::int64_t{481});
    EXPECT_EQ(payload(std::string("Bpp8")), 641 * 481);
    EXPECT_EQ(payload(std::string("Bpp12Packed")), 641 * 481 * 12 / 8);
    // What cannot be used falls back to the image size.
    for (const char* text : {"BppX", "Bpp", "B", "Bpp-8", "Bpp4294967304"})
        EXPECT_EQ(payload(std::string(text)), 777) << text;
    EXPECT_EQ(payload(std::int64_t{8}), 777);
    fakes.features->put("Height", 481.0);
    EXPECT_EQ(payload(std::string("Bpp8")), 777);
    fakes.features->put("Width", std::int64_t{3});
    fakes.features->put("Height", std::int64_t{1});
    EXPECT_EQ(payload(std::string("Bpp10")), 3) << "3.75";
    EXPECT_EQ(fakes.log.text(), "");
}

/// A camera whose frame rate is limited by its sensor, and by its bandwidth per byte of a frame.
struct ModelCamera : HandlerWithFakes {
    ModelCamera(std::int64_t payload, std::int64_t minimum, std::int64_t maximum, double sensorRate,
                double overhead) {
        features->putLimit(maximum / 3, minimum, maximum);
        if (payload > 0)
            features->put("ImageSize", payload);
        const double bytes = static_cast<double>(std::max<std::int64_t>(payload, 1)) * overhead;
        const auto rateOf = [=](std::int64_t bandwidth) {
            return std::min(sensorRate, static_cast<double>(bandwidth) / bytes);
        };
        report(rateOf);
        features->put("AcquisitionFrameRateLimit", rateOf(maximum / 3));
    }

    /// Frame rate after each write.
    void report(std::function<FeatureValue(std::int64_t bandwidth)> rateOf) {
        features->onWrite = [rateOf = std::move(rateOf), target = features.get()] {
            target->put("AcquisitionFrameRateLimit", rateOf(target->writtenIntegers().back()));
        };
    }
};

using Steps = std::vector<std::int64_t>;

TEST(CameraAutoSet, findsTheKnownAnswer) {
    const Steps tenSteps{550'000, 325'000, 212'500, 156'250, 128'125,
                         114'063, 107'032, 103'517, 101'760, 100'882};
    const struct {
        const char* name;
        /// Bytes that the camera sends for each byte of payload.
        double overhead;
        std::int64_t result;
        /// After the maximum and the calculated bandwidth.
        Steps tried;
        std::int64_t minimum = 10;
        std::int64_t payload = 1000;
    } cases[] = {
        {"suffices at once", 1.0, 101'760, tenSteps},
        {"is held to the minimum", 1.0, 150'000, tenSteps, 150'000},
        {"repeats one step", 1.3, 142'188, {550'000, 325'000, 212'500, 156'250, 128'125, 142'188}},
        {"ends with repeated steps",
         1.032,
         104'395,
         {550'000, 325'000, 212'500, 156'250, 128'125, 114'063, 107'032, 103'517, 101'760,
          102'639}},
        {"climbs before it turns",
         8.0,
         796'094,
         {550'000, 775'000, 887'500, 831'250, 803'125, 789'063, 796'094}},
        {"takes what barely misses the target",
         5.546,
         553'516,
         {550'000, 775'000, 662'500, 606'250, 578'125, 564'063, 557'032, 553'517, 551'760}},
        {"starts at zero without a payload",
         1000.0,
         109'375,
         {500'000, 250'000, 125'000, 62'500, 93'750, 109'375},
         50,
         0},
    };
    for (const auto& each : cases) {
        ModelCamera camera(each.payload, each.minimum, 1'000'000, 100.0, each.overhead);
        EXPECT_EQ(camera.handler.autoSet(cameraMargin), each.result) << each.name;
        Steps written{1'000'000, each.payload * 100};
        written.insert(written.end(), each.tried.begin(), each.tried.end());
        EXPECT_EQ(camera.features->writtenIntegers(), written) << each.name;
        EXPECT_EQ(camera.features->reads["DeviceLinkThroughputLimit"], 1);
    }
}

TEST(CameraAutoSet, judgesRatesByTheTolerance) {
    const struct {
        /// What the camera reports after each write; the last one repeats.
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
        std::size_t write = 0;
        camera.report([&](std::int64_t) {
            return expected.rates[std::min(write++, expected.rates.size() - 1)];
        });
        EXPECT_EQ(camera.handler.autoSet(cameraMargin), expected.result);
        EXPECT_EQ(camera.features->writtenIntegers(), expected.written);
    }
}

TEST(CameraAutoSet, climbsToAboutTheMaximumWithoutATargetThatIsReachedAgain) {
    constexpr std::int64_t odd = 1'000'001;
    for (const FeatureValue& target :
         {FeatureValue(0.0), FeatureValue(-1e300), FeatureValue(std::nan("")),
          FeatureValue(std::int64_t{30}), FeatureValue(100.0)}) {
        const bool isReachedOnce = target == FeatureValue(100.0);
        ModelCamera camera(1000, 10, isReachedOnce ? odd : 900'000, 100.0, 1.0);
        camera.report([&](std::int64_t bandwidth) {
            return isReachedOnce && bandwidth != odd ? FeatureValue(50.0) : target;
        });
        EXPECT_EQ(camera.handler.autoSet(cameraMargin),
                  (isReachedOnce ? 999'118 : 899'118) - 2 * 439);
        EXPECT_EQ(camera.features->written.size(), 12U);
    }
}

TEST(CameraAutoSet, tellsEveryStep) {
    ModelCamera camera(1000, 10, 1'000'000, 100.0, 1.3);
    camera.features->put("AcquisitionFrameRateEnable", true);
    camera.handler.autoSet(cameraMargin);
    EXPECT_EQ(
        camera.log.text(),
        infoLine + ": AcquisitionFrameRate before optimization 100.000000\n" + infoLine +
            ": 'AcquisitionFrameRateEnable' is 'true', the user-set AcquisitionFrameRate will be "
            "used for optimization.\n" +
            infoLine +
            ": AcquisitionFrameRate max. possible 100.000000\n"
            "Debug:Calculated bandwidth:100000 current frame rate: 76.923077\n"
            "Debug:Max frameRate: 100.000000 max. bandwidth: 1000000\n"
            "Debug:Deviation: 0.000000 Current frameRate: 100.000000  stepBW: 450000 "
            "bandwidth:550000\n"
            "Debug:Switch direction\n"
            "Debug:Deviation: -0.000000 Current frameRate: 100.000000  stepBW: 225000 "
            "bandwidth:325000\n"
            "Debug:Deviation: -0.000000 Current frameRate: 100.000000  stepBW: 112500 "
            "bandwidth:212500\n"
            "Debug:Deviation: -0.000000 Current frameRate: 100.000000  stepBW: 56250 "
            "bandwidth:156250\n"
            "Debug:Deviation: -0.014423 Current frameRate: 98.557692  stepBW: 28125 "
            "bandwidth:128125\n"
            "Debug:Repeat 1/2 of last step, from bandwidth: 156250\n"
            "Debug:Deviation: -0.000000 Current frameRate: 100.000000  stepBW: 14062 "
            "bandwidth:142188\n"
            "Debug:Autoset completed in 6 steps.\n");
}

TEST(CameraAutoSet, tellsWhenItSkipsTheSearch) {
    ModelCamera camera(1000, 10, 105'000, 100.0, 1.0);
    camera.features->put("AcquisitionFrameRateEnable", false);
    camera.features->put("AcquisitionFrameRateLimit", 0.0);
    EXPECT_EQ(camera.handler.autoSet(cameraMargin), 100'000);
    EXPECT_THAT(camera.features->writtenIntegers(), ElementsAre(105'000));
    EXPECT_THAT(camera.log.lines(),
                ElementsAre(infoLine + ": AcquisitionFrameRate before optimization 0.000000",
                            infoLine + ": AcquisitionFrameRate max. possible 100.000000",
                            "Debug:Calculated bandwidth 100000 + camera safety margin > maximum "
                            "bandwidth, skip iteration."));
}

TEST(CameraAutoSet, failsWithoutFrameRateOrBandwidthFeature) {
    const std::string internal =
        errorLine + ": current AcquisitionFrameRate < 0, internal error occured.";
    const std::string noLimit = errorLine + ": No bandwidth speed related feature found.";
    const std::pair<FeatureValue, std::string> cases[] = {
        {-2.0, internal}, {std::int64_t{30}, internal}, {std::nan(""), internal}, {10.0, noLimit}};
    for (const auto& [rate, line] : cases) {
        HandlerWithFakes fakes;
        fakes.features->put("AcquisitionFrameRate", rate);
        EXPECT_EQ(fakes.handler.autoSet(cameraMargin), 0);
        EXPECT_EQ(fakes.handler.getAutosetStatus(), AutosetStatus::NotSet);
        EXPECT_EQ(fakes.log.lines().back(), line);
    }
    HandlerWithFakes fakes;
    EXPECT_EQ(fakes.handler.autoSet(cameraMargin), 0);
    EXPECT_THAT(
        fakes.log.lines(),
        ElementsAre(errorLine + ": No acquisition frame rate related feature found.", internal));
}

TEST(CameraAutoSet, writesNoUnknownMaximum) {
    HandlerWithFakes fakes;
    fakes.features->put("StreamBytesPerSecond", std::int64_t{5}).maximum = 1e6;
    fakes.features->put("AcquisitionFrameRate", 10.0);
    fakes.features->put("ImageSize", std::int64_t{1000});
    EXPECT_EQ(fakes.handler.autoSet(cameraMargin), 10'000);
    EXPECT_TRUE(fakes.features->written.empty());
}

TEST(CameraAutoSet, survivesExtremeNumbers) {
    using Limits = std::numeric_limits<std::int64_t>;
    for (const double overhead : {1.0, 1e15}) {
        ModelCamera camera(1000, 10, Limits::max(), 100.0, overhead);
        EXPECT_GE(camera.handler.autoSet(cameraMargin), 10);
        EXPECT_LE(camera.features->written.size(), 13U);
    }
    for (const double anyMargin : {cameraMargin, -2.0, std::nan("")}) {
        for (const std::int64_t maximum : {Limits::max(), std::int64_t{1}, Limits::min()}) {
            ModelCamera camera(Limits::max(), 10, maximum, 100.0, 1e-10);
            camera.features->put("AcquisitionFrameRateLimit", 100.0);
            EXPECT_GE(camera.handler.autoSet(anyMargin), 0);
            EXPECT_EQ(camera.features->written.empty(), maximum < 0);
        }
    }
}

} // namespace
