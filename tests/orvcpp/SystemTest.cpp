// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/SdkFixture.h"

using namespace testing;
using namespace sdk;

namespace {

TEST(Access, isWhatTheScenarioGrants) {
    const Running run(scenario(gige("Held", R"(, "access": "read")") + "," +
                               gige("Broken", R"(, "faults": {"openError": -20})")));
    const auto held = sdk::camera("Held");
    EXPECT_EQ(held->Open(OrvAccessModeFull), OrvErrorInvalidAccess);
    EXPECT_EQ(ask(*held, &Camera::GetPermittedAccess), OrvAccessModeRead);
    EXPECT_EQ(held->Open(OrvAccessModeRead), OrvErrorSuccess);

    const auto broken = sdk::camera("Broken");
    EXPECT_EQ(broken->Open(OrvAccessModeFull), OrvErrorIO);
    EXPECT_NE(ask(*broken, &Camera::GetPermittedAccess) & OrvAccessModeFull, 0U);
}

/// Makes a second pointer with its own owner for each camera.
class Factory : public OrvCPP::ICameraFactory {
public:
    std::shared_ptr<Camera> CreateCamera(const std::shared_ptr<Camera>& camera) override {
        EXPECT_THAT(cameras(), SizeIs(2)) << "the factory may ask for the cameras";
        made.push_back(std::shared_ptr<Camera>(camera.get(), [camera](Camera*) {}));
        return made.back();
    }
    std::vector<std::shared_ptr<Camera>> made;
};

TEST(CameraFactory, isAskedOnceForEachCamera) {
    const Running run(scenario(gige("A") + "," + gige("B")));
    const auto factory = std::make_shared<Factory>();
    ASSERT_EQ(system().RegisterCameraFactory(factory), OrvErrorSuccess);
    EXPECT_EQ(system().RegisterCameraFactory(factory), OrvErrorAlreadyDone);
    for (const auto& camera : {sdk::camera("A"), sdk::camera("A"), cameras()[0]}) {
        ASSERT_THAT(factory->made, SizeIs(2));
        EXPECT_FALSE(camera.owner_before(factory->made[1])) << "the owner is the factory's";
        EXPECT_FALSE(factory->made[1].owner_before(camera));
    }
    EXPECT_EQ(system().UnregisterCameraFactory(), OrvErrorSuccess);
    EXPECT_EQ(system().UnregisterCameraFactory(), OrvErrorNotFound);
}

TEST(Calls, takeTheirTimeAreCountedAndOneCanFail) {
    std::string slow = scenario(gige("A", sensor(200)));
    slow.insert(1, R"("callDelayMicroseconds": 2000, )");
    const Running run(slow);
    const auto camera = openCamera("A");
    simulation().ResetCalls();
    const auto begin = std::chrono::steady_clock::now();
    getText(*camera, "TriggerMode");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(6));
    EXPECT_EQ(simulation().GetCallCount(), 3U) << "by name, then the text twice";
    const auto receiver = startReceiving(camera);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 5; }));
    ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_EQ(simulation().GetCallCount(), 5U) << "frames do not count";

    simulation().ResetCalls();
    simulation().FailCall(2, OrvErrorTimeout);
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorTimeout);
    EXPECT_EQ(get<std::int64_t>(*camera, "Width"), 320) << "the failed call did nothing";
    simulation().ResetCalls();
    std::uint32_t count = 0;
    EXPECT_EQ(system().GetCameras(nullptr, count), OrvErrorSuccess);
    EXPECT_EQ(system().GetCameras(nullptr, count), OrvErrorTimeout) << "the system's calls count";
}

/// Threads of this process; 0 where they are not in the file system.
std::ptrdiff_t threadCount() {
    std::error_code error;
    const std::filesystem::directory_iterator all("/proc/self/task", error);
    return std::distance(begin(all), end(all));
}

TEST(Shutdown, leavesNoThread) {
    if (threadCount() == 0)
        GTEST_SKIP() << "only Linux lists the threads";
    // A sanitizer's own thread starts with the first thread of the program.
    std::thread([] {}).join();
    const auto before = threadCount();
    ASSERT_EQ(startWith(scenario(gige("A", sensor(200)) + "," + usb("B", 1, sensor(200)))),
              OrvErrorSuccess);
    const auto camera = openCamera("A");
    const auto other = openCamera("B");
    ASSERT_EQ(start(*camera, std::make_shared<Receiver>(camera)), OrvErrorSuccess);
    ASSERT_EQ(start(*other, std::make_shared<Receiver>(other)), OrvErrorSuccess);
    EXPECT_GT(threadCount(), before);

    EXPECT_EQ(system().Shutdown(), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return threadCount() == before; })) << threadCount();
    EXPECT_THAT(simulation().GetHost().usbNodes, IsEmpty());
}

} // namespace
