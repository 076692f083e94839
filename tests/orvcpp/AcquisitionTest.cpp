// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/SdkFixture.h"

using namespace testing;
using namespace sdk;

namespace {

double secondsSince(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

TEST(Acquisition, followsTheBandwidthWhileItRuns) {
    const Running run(scenario(gige("A", sensor(100) + R"(, "bandwidth": {"minimum": 64000})")));
    const auto camera = openCamera("A");
    const auto begin = std::chrono::steady_clock::now();
    const auto receiver = startReceiving(camera);
    EXPECT_TRUE(eventually([&] { return receiver->count() >= 20; }));
    EXPECT_GE(secondsSince(begin), 0.18) << "frames do not come faster than the rate";

    EXPECT_EQ(set(*camera, "DeviceLinkThroughputLimit", std::int64_t{20 * 64'000}),
              OrvErrorSuccess);
    const auto before = receiver->count();
    const auto slower = std::chrono::steady_clock::now();
    EXPECT_TRUE(eventually([&] { return receiver->count() >= before + 4; }));
    EXPECT_GE(secondsSince(slower), 0.14) << "20 per second, the first one may be under way";
    EXPECT_EQ(camera->Close(), OrvErrorSuccess) << "stops";
}

TEST(Link, carriesNoMoreThanItsSpeedAndLosesInProportion) {
    // A link of 20 Mbit/s = 2.5 MB/s is asked for 5.12 MB/s, another for less than it carries.
    std::string text = scenario(gige("A", sensor(50) + R"(, "linkSpeedMbps": 1000)") + "," +
                                gige("B", sensor(30) + R"(, "linkSpeedMbps": 1000)") + "," +
                                usb("C", 1, sensor(20)));
    text.insert(text.find(R"("address")"), R"("speedMbps": 20, )");
    const Running run(text);
    std::vector<std::shared_ptr<Camera>> all;
    std::vector<std::shared_ptr<Receiver>> receivers;
    const auto begin = std::chrono::steady_clock::now();
    for (const char* id : {"A", "B", "C"}) {
        all.push_back(openCamera(id));
        receivers.push_back(startReceiving(all.back()));
    }
    EXPECT_TRUE(eventually([&] { return receivers[0]->count() >= 40; }));
    for (const auto& camera : all)
        ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    const double seconds = secondsSince(begin);
    const auto statistic = [&](std::size_t i, const char* name) {
        return get<std::int64_t>(*stream(*all[i]), name);
    };
    const auto carried =
        statistic(0, "StreamDeliveredByteCount") + statistic(1, "StreamDeliveredByteCount");
    EXPECT_LE(static_cast<double>(carried), 2.5e6 * seconds + 3 * 64'000);
    constexpr double share = 2.5e6 / (80 * 64'000);
    for (std::size_t i = 0; i < 3; ++i) {
        const auto sent = get<std::int64_t>(*all[i], "AcquisitionFrameCounter");
        const auto delivered = statistic(i, "StreamDeliveredFrameCount");
        EXPECT_EQ(delivered, static_cast<std::int64_t>(receivers[i]->count()));
        EXPECT_EQ(delivered + statistic(i, "StreamLostFrameCount") +
                      statistic(i, "StreamUnderrunFrameCount"),
                  sent)
            << "no frame is unaccounted for";
        EXPECT_LE(static_cast<std::int64_t>(receivers[i]->ids().back()), sent);
        EXPECT_NEAR(static_cast<double>(delivered), static_cast<double>(sent) * (i < 2 ? share : 1),
                    2.5);
        EXPECT_EQ(statistic(i, "StreamIncompleteFrameCount"), receivers[i]->incomplete);
    }
    EXPECT_GT(statistic(0, "StreamIncompleteFrameCount"), 0);
    EXPECT_EQ(statistic(2, "StreamLostFrameCount") + statistic(2, "StreamIncompleteFrameCount"), 0);
}

TEST(Link, carriesTheTrafficOfOthersToo) {
    // Of 2.5 MB/s, 2 MB/s go to others; the camera asks for 3 MB/s, and then has half of them.
    std::string text = scenario(
        gige("A", sensor(47) + R"(, "linkSpeedMbps": 1000)") + "," +
        gige("B", R"(, "access": "none", "linkSpeedMbps": 1000, "otherTraffic": 2000000)"));
    text.insert(text.find(R"("address")"), R"("speedMbps": 20, )");
    const Running run(text);
    const auto camera = openCamera("A");
    const auto deliveredShare = [&] {
        const auto receiver = startReceiving(camera);
        EXPECT_TRUE(eventually([&] { return receiver->count() >= 25; }));
        EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
        return static_cast<double>(receiver->count()) /
               static_cast<double>(get<std::int64_t>(*camera, "AcquisitionFrameCounter"));
    };
    EXPECT_NEAR(deliveredShare(), 0.5, 0.06);
    simulation().SetCameraPlugged("B", false);
    EXPECT_NEAR(deliveredShare(), 2.5 / 3, 0.06);
}

TEST(Faults, loseTheSameFramesInEveryRun) {
    std::vector<std::vector<std::uint64_t>> runs;
    for (int round = 0; round < 2; ++round) {
        const Running run(scenario(
            usb("A", 1, sensor(1000) + R"(, "faults": {"lossRate": 0.2, "incompleteRate": 0.3})")));
        const auto camera = openCamera("A");
        const auto receiver = startReceiving(camera, 64);
        EXPECT_TRUE(eventually([&] { return receiver->count() >= 160; }));
        camera->StopContinuousImageAcquisition();
        auto ids = receiver->ids();
        EXPECT_NEAR(receiver->incomplete, static_cast<double>(ids.size()) * 0.3, 25);
        ids.resize(160);
        EXPECT_NEAR(static_cast<double>(ids.back()), 200, 30);
        runs.push_back(ids);
    }
    EXPECT_EQ(runs[0], runs[1]);
}

TEST(Trigger, startsFrames) {
    const auto triggered = [](const char* source, const char* rate = "") {
        return gige(source, sensor(200) + R"(, "trigger": {"mode": "On", "source": ")" + source +
                                '"' + rate + "}");
    };
    const Running run(scenario(triggered("Software") + "," + triggered("Freerun") + "," +
                               triggered("Line1", R"(, "rate": 50)")));
    const auto soft = openCamera("Software");
    const auto receiver = startReceiving(soft);
    for (const char* id : {"Freerun", "Line1"}) {
        const auto camera = openCamera(id);
        const auto begin = std::chrono::steady_clock::now();
        const auto other = startReceiving(camera);
        EXPECT_TRUE(eventually([&] { return other->count() >= 10; })) << id;
        EXPECT_GE(secondsSince(begin), *id == 'L' ? 0.18 : 0) << "50 triggers per second";
    }
    EXPECT_EQ(receiver->count(), 0U);
    for (std::size_t i = 1; i <= 3; ++i) {
        EXPECT_EQ(feature(*soft, "TriggerSoftware")->RunCommand(), OrvErrorSuccess);
        EXPECT_TRUE(eventually([&] { return receiver->count() == i; }));
    }
    EXPECT_EQ(set(*soft, "TriggerMode", "Off"), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() >= 10; }));
}

TEST(Stop, worksInAnyOrderFromSeveralThreads) {
    for (int round = 0; round < 5; ++round) {
        ASSERT_EQ(startWith(scenario(gige("A", sensor(1000) + R"(, "count": 4)") + "," +
                                     usb("B", 1, sensor(1000)))),
                  OrvErrorSuccess);
        const auto all = cameras();
        std::vector<std::thread> users;
        for (const auto& camera : all) {
            for (int i = 0; i < 2; ++i)
                users.emplace_back([&camera, i] {
                    for (int n = 0; n < 20; ++n) {
                        camera->Open(OrvAccessModeFull);
                        start(*camera, std::make_shared<Receiver>(camera), 2);
                        std::shared_ptr<Feature> limit;
                        if (!camera->GetFeatureByName("DeviceLinkThroughputLimit", limit))
                            limit->SetValue(std::int64_t{1'000'000 * (n + 1)});
                        if (i == 0)
                            camera->StopContinuousImageAcquisition();
                        camera->Close();
                    }
                });
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(3 * round));
        EXPECT_EQ(system().Shutdown(), OrvErrorSuccess);
        for (std::thread& user : users)
            user.join();
        EXPECT_EQ(all[0]->Open(OrvAccessModeFull), OrvErrorApiNotStarted);
    }
}

} // namespace
