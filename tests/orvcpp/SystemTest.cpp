// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/SdkFixture.h"
#include "tests/orvcpp/ThreadCount.h"

#include <map>

using namespace testing;
using namespace sdk;

namespace {

TEST(System, AnswersNotStartedUntilStartup) {
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

TEST(System, FindsObjectsByTheirIds) {
    const Running run(scenario(gige("A") + "," + usb("B", 1)));
    const auto id = [](const Camera& camera, bool extended) {
        return text([&](char* b, auto& n) { return camera.GetID(b, n, extended); });
    };
    const auto all = cameras();
    ASSERT_THAT(all, SizeIs(2));
    EXPECT_EQ(sdk::camera(id(*all[1], true)), all[1]) << "the same object each time";
    EXPECT_NE(id(*all[1], true), id(*all[1], false));
    std::shared_ptr<OrvCPP::Interface> interface;
    EXPECT_EQ(system().GetInterfaceByID("usb", interface), OrvErrorSuccess);
    EXPECT_THAT(
        list<Camera>([&](auto array, auto& count) { return interface->GetCameras(array, count); }),
        ElementsAre(all[1]));
    std::shared_ptr<OrvCPP::TransportLayer> layer;
    EXPECT_EQ(system().GetTransportLayerByID("G", layer), OrvErrorSuccess);
    EXPECT_EQ(text(*layer, &OrvCPP::TransportLayer::GetVendor), "Meridane Technologies");
    EXPECT_EQ(text(*layer, &OrvCPP::TransportLayer::GetName), "MRD GigE Vision Transport Layer");
    EXPECT_EQ(system().GetTransportLayerByID("X", layer), OrvErrorNotFound);
    std::shared_ptr<Camera> array[1];
    std::uint32_t count = 1;
    EXPECT_EQ(system().GetCameras(array, count), OrvErrorMoreData);
    EXPECT_EQ(count, 2U);
}

TEST(Access, IsExclusive) {
    const Running run(scenario(gige("A") + "," + gige("Held", R"(, "access": "read")") + "," +
                               gige("Broken", R"(, "faults": {"openError": -20})")));
    const auto permitted = [](const Camera& camera) {
        OrvAccessModeType modes = OrvAccessModeNone;
        EXPECT_EQ(camera.GetPermittedAccess(modes), OrvErrorSuccess);
        return static_cast<unsigned>(modes);
    };
    const auto camera = openCamera("A");
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorInvalidAccess);
    EXPECT_EQ(permitted(*camera) & OrvAccessModeFull, 0U);
    EXPECT_EQ(camera->Close(), OrvErrorSuccess);
    EXPECT_EQ(camera->Close(), OrvErrorDeviceNotOpen);
    EXPECT_NE(permitted(*camera) & OrvAccessModeFull, 0U);
    EXPECT_EQ(camera->Open(OrvAccessModeNone), OrvErrorBadParameter);

    const auto held = sdk::camera("Held");
    EXPECT_EQ(held->Open(OrvAccessModeFull), OrvErrorInvalidAccess);
    EXPECT_EQ(permitted(*held), OrvAccessModeRead);
    EXPECT_EQ(held->Open(OrvAccessModeRead), OrvErrorSuccess);
    EXPECT_EQ(start(*held, std::make_shared<Receiver>(held)), OrvErrorInvalidAccess);

    const auto broken = sdk::camera("Broken");
    EXPECT_EQ(broken->Open(OrvAccessModeFull), OrvErrorIO);
    EXPECT_NE(permitted(*broken) & OrvAccessModeFull, 0U);
}

class ListObserver : public OrvCPP::ICameraListObserver {
public:
    void CameraListChanged(const std::shared_ptr<Camera>& camera,
                           OrvUpdateTriggerType reason) override {
        shutdownAnswer = system().Shutdown();
        const std::lock_guard lock(m_mutex);
        m_reasons[reason].push_back(camera);
    }
    std::size_t count(OrvUpdateTriggerType reason) {
        const std::lock_guard lock(m_mutex);
        return m_reasons[reason].size();
    }
    std::shared_ptr<Camera> first(OrvUpdateTriggerType reason) {
        const std::lock_guard lock(m_mutex);
        return m_reasons[reason].at(0);
    }
    std::atomic<int> shutdownAnswer{0};

private:
    std::mutex m_mutex;
    std::map<OrvUpdateTriggerType, std::vector<std::shared_ptr<Camera>>> m_reasons;
};

TEST(Unplugging, EndsTheStreamAndTellsTheObservers) {
    const Running run(scenario(gige("A", sensor(200)) + "," + gige("B")));
    const auto observer = std::make_shared<ListObserver>();
    EXPECT_EQ(system().RegisterCameraListObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(system().RegisterCameraListObserver(observer), OrvErrorAlreadyDone);
    const auto camera = openCamera("A");
    EXPECT_TRUE(eventually([&] { return observer->count(OrvUpdateTriggerOpenStateChanged) == 1; }));
    const auto width = feature(*camera, "Width");
    const auto receiver = std::make_shared<Receiver>(camera);
    ASSERT_EQ(start(*camera, receiver), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 0; }));

    EXPECT_FALSE(simulation().SetCameraPlugged("X", false));
    EXPECT_TRUE(simulation().SetCameraPlugged("A", false));
    EXPECT_TRUE(eventually([&] { return observer->count(OrvUpdateTriggerPluggedOut) == 1; }));
    EXPECT_EQ(observer->first(OrvUpdateTriggerPluggedOut), camera);
    EXPECT_EQ(observer->shutdownAnswer, OrvErrorInvalidCall);
    EXPECT_THAT(cameras(), SizeIs(1));
    std::int64_t value = 0;
    EXPECT_EQ(width->GetValue(value), OrvErrorNotFound);
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorNotFound);

    EXPECT_TRUE(simulation().SetCameraPlugged("A", true));
    EXPECT_TRUE(eventually([&] { return observer->count(OrvUpdateTriggerPluggedIn) == 1; }));
    EXPECT_EQ(width->GetValue(value), OrvErrorNotFound) << "the old connection is gone";
    EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_EQ(camera->Close(), OrvErrorSuccess);
    EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    EXPECT_EQ(width->GetValue(value), OrvErrorSuccess);
    EXPECT_EQ(system().UnregisterCameraListObserver(observer), OrvErrorSuccess);
    EXPECT_EQ(system().UnregisterCameraListObserver(observer), OrvErrorNotFound);
}

TEST(Faults, LetACameraVanishAfterItsTime) {
    const Running run(
        scenario(gige("A", R"(, "faults": {"vanishAfterSeconds": 0.2})") + "," + gige("B")));
    EXPECT_THAT(cameras(), SizeIs(2));
    EXPECT_TRUE(eventually([&] { return cameras().size() == 1; }));
}

/// Puts a second pointer with an owner of its own in front of each camera.
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

TEST(CameraFactory, IsAskedOnceForEachCamera) {
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

TEST(Calls, AreCountedAndOneCanFail) {
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

TEST(Calls, TakeTheScenariosTime) {
    std::string slow = scenario(gige("A"));
    slow.insert(1, R"("callDelayMicroseconds": 2000, )");
    const Running run(slow);
    const auto camera = openCamera("A");
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 10; ++i)
        feature(*camera, "Width");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(20));
}

TEST(Shutdown, LeavesNoThreadAndNothingThatWorks) {
    // A sanitizer's own thread starts with the first thread of the program.
    std::thread([] {}).join();
    const int before = threadCount();
    ASSERT_EQ(startWith(scenario(gige("A", sensor(200)) + "," + usb("B", 1, sensor(200)))),
              OrvErrorSuccess);
    EXPECT_EQ(system().RegisterCameraListObserver(std::make_shared<ListObserver>()),
              OrvErrorSuccess);
    const auto camera = openCamera("A");
    const auto other = openCamera("B");
    const auto width = feature(*camera, "Width");
    const auto receiver = std::make_shared<Receiver>(camera, true);
    ASSERT_EQ(start(*camera, receiver), OrvErrorSuccess);
    ASSERT_EQ(start(*other, std::make_shared<Receiver>(other)), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 0; }));
    EXPECT_GT(threadCount(), before);

    EXPECT_EQ(system().Shutdown(), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return threadCount() == before; })) << threadCount();
    std::int64_t value = 0;
    EXPECT_EQ(width->GetValue(value), OrvErrorApiNotStarted);
    EXPECT_EQ(camera->Close(), OrvErrorApiNotStarted);
    EXPECT_THAT(simulation().GetHost().usbNodes, IsEmpty());
    std::uint64_t id = 0;
    for (const auto& frame : receiver->takeKept())
        EXPECT_EQ(frame->GetFrameID(id), OrvErrorSuccess) << "kept frames can still be asked";
}

} // namespace
