// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/SdkFixture.h"
#include "tests/orvcpp/ThreadCount.h"

using namespace testing;
using namespace sdk;

namespace {

TEST(System, answersNotStartedUntilStartup) {
    std::uint32_t count = 0;
    std::shared_ptr<Camera> camera;
    EXPECT_EQ(system().GetCameras(nullptr, count), OrvErrorApiNotStarted);
    EXPECT_EQ(system().GetCameraByID("A", camera), OrvErrorApiNotStarted);
    EXPECT_EQ(system().RegisterCameraListObserver(nullptr), OrvErrorApiNotStarted);
    EXPECT_EQ(system().Shutdown(), OrvErrorSuccess);
    OrvVersionInfo version;
    EXPECT_EQ(system().QueryVersion(version), OrvErrorSuccess);
    EXPECT_EQ(version.major, 1U);
}

TEST(Access, isWhatTheScenarioGrants) {
    const Running run(scenario(gige("Held", R"(, "access": "read")") + "," +
                               gige("Broken", R"(, "faults": {"openError": -20})")));
    const auto permitted = [](const Camera& camera) {
        OrvAccessModeType modes = OrvAccessModeNone;
        EXPECT_EQ(camera.GetPermittedAccess(modes), OrvErrorSuccess);
        return static_cast<unsigned>(modes);
    };
    const auto held = sdk::camera("Held");
    EXPECT_EQ(held->Open(OrvAccessModeFull), OrvErrorInvalidAccess);
    EXPECT_EQ(permitted(*held), OrvAccessModeRead);
    EXPECT_EQ(held->Open(OrvAccessModeRead), OrvErrorSuccess);
    EXPECT_EQ(start(*held, std::make_shared<Receiver>(held)), OrvErrorInvalidAccess);

    const auto broken = sdk::camera("Broken");
    EXPECT_EQ(broken->Open(OrvAccessModeFull), OrvErrorIO);
    EXPECT_NE(permitted(*broken) & OrvAccessModeFull, 0U);
}

TEST(Faults, unplugACameraAfterItsTime) {
    const Running run(
        scenario(gige("A", R"(, "faults": {"vanishAfterSeconds": 0.05})") + "," + gige("B")));
    EXPECT_THAT(cameras(), SizeIs(2));
    EXPECT_TRUE(eventually([&] { return cameras().size() == 1; }));
}

/// Makes a second pointer with its own owner for each camera.
class Factory : public OrvCPP::ICameraFactory {
public:
    std::shared_ptr<Camera> CreateCamera(const std::shared_ptr<Camera>& camera) override {
        ++calls;
        EXPECT_THAT(cameras(), SizeIs(2)) << "the factory may ask for the cameras";
        made = std::shared_ptr<Camera>(camera.get(), [camera](Camera*) {});
        return made;
    }
    int calls = 0;
    std::shared_ptr<Camera> made;
};

TEST(CameraFactory, isAskedOnceForEachCamera) {
    const Running run(scenario(gige("A") + "," + gige("B")));
    const auto factory = std::make_shared<Factory>();
    ASSERT_EQ(system().RegisterCameraFactory(factory), OrvErrorSuccess);
    EXPECT_EQ(system().RegisterCameraFactory(factory), OrvErrorAlreadyDone);
    const auto owner = [](const auto& a, const auto& b) {
        return !a.owner_before(b) && !b.owner_before(a);
    };
    EXPECT_TRUE(owner(sdk::camera("A"), factory->made));
    const int once = factory->calls;
    EXPECT_TRUE(owner(sdk::camera("A"), cameras()[0]));
    EXPECT_EQ(cameras().size(), 2U);
    EXPECT_LE(factory->calls, 2);
    EXPECT_GE(factory->calls, once);
    EXPECT_EQ(system().UnregisterCameraFactory(), OrvErrorSuccess);
    EXPECT_EQ(system().UnregisterCameraFactory(), OrvErrorNotFound);
}

TEST(Calls, areCountedAndOneCanFail) {
    const Running run(scenario(gige("A", sensor(200))));
    const auto camera = openCamera("A");
    simulation().ResetCalls();
    getText(*camera, "TriggerMode");
    EXPECT_EQ(simulation().GetCallCount(), 3U) << "by name, then the text twice";
    const auto receiver = std::make_shared<Receiver>(camera);
    ASSERT_EQ(start(*camera, receiver), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 5; }));
    ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_EQ(simulation().GetCallCount(), 5U) << "frames do not count";

    simulation().ResetCalls();
    simulation().FailCall(2, OrvErrorTimeout);
    const auto width = feature(*camera, "Width");
    EXPECT_EQ(width->SetValue(std::int64_t{160}), OrvErrorTimeout);
    EXPECT_EQ(get<std::int64_t>(*camera, "Width"), 320) << "the failed call did nothing";
    simulation().ResetCalls();
    std::uint32_t count = 0;
    EXPECT_EQ(system().GetCameras(nullptr, count), OrvErrorSuccess);
    EXPECT_EQ(system().GetCameras(nullptr, count), OrvErrorTimeout) << "the system's calls count";
}

TEST(Calls, takeTheScenariosTime) {
    std::string slow = scenario(gige("A"));
    slow.insert(1, R"("callDelayMicroseconds": 2000, )");
    const Running run(slow);
    const auto camera = openCamera("A");
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 10; ++i)
        feature(*camera, "Width");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(20));
}

TEST(Shutdown, leavesNoThread) {
    // A sanitizer's own thread starts with the first thread of the program.
    std::thread([] {}).join();
    const int before = threadCount();
    ASSERT_EQ(startWith(scenario(gige("A", sensor(200)) + "," + usb("B", 1, sensor(200)))),
              OrvErrorSuccess);
    const auto camera = openCamera("A");
    const auto other = openCamera("B");
    const auto receiver = std::make_shared<Receiver>(camera);
    ASSERT_EQ(start(*camera, receiver), OrvErrorSuccess);
    ASSERT_EQ(start(*other, std::make_shared<Receiver>(other)), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 0; }));
    EXPECT_GT(threadCount(), before);

    EXPECT_EQ(system().Shutdown(), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return threadCount() == before; })) << threadCount();
    EXPECT_THAT(simulation().GetHost().usbNodes, IsEmpty());
}

} // namespace
