// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/aravis/FakeCameraFixture.h"

namespace {

using cameras::Clock;
using cameras::find;
using sdk::eventually;
using sdk::get;
using sdk::Receiver;
using std::chrono::milliseconds;

/// Longest time that all calls of a refresh may take when a camera dies.
constexpr milliseconds patience{3000};

class LostCamera : public cameras::OneCamera {
protected:
    /// Makes the calls of a refresh to an absent camera: reads it, stops it, closes it.
    milliseconds tryEverything() {
        const auto begun = Clock::now();
        std::int64_t value = 0;
        for (int i = 0; i < 20; ++i)
            last = width->GetValue(value);
        camera->StopContinuousImageAcquisition();
        EXPECT_EQ(camera->Close(), OrvErrorSuccess);
        std::uint32_t count = 0;
        sdk::system().GetCameras(nullptr, count);
        return std::chrono::duration_cast<milliseconds>(Clock::now() - begun);
    }
    /// Waits until it can be opened and streams.
    void expectReturn() {
        EXPECT_TRUE(eventually([] { return find("FC0001") != nullptr; }));
        const auto back = find("FC0001");
        ASSERT_TRUE(back);
        EXPECT_TRUE(eventually([&] { return back->Open(OrvAccessModeFull) == OrvErrorSuccess; }));
        const auto receiver = std::make_shared<Receiver>(back);
        ASSERT_EQ(sdk::start(*back, receiver), OrvErrorSuccess);
        EXPECT_TRUE(eventually([&] { return receiver->count() > 5; }));
        EXPECT_EQ(back->Close(), OrvErrorSuccess);
    }
    void SetUp() override {
        OneCamera::SetUp();
        width = sdk::feature(*camera, "Width");
    }

    std::shared_ptr<OrvCPP::Feature> width;
    OrvErrorType last = OrvErrorUnknown;
};

TEST_F(LostCamera, delaysCallsBrieflyWhenItDiesAndReopensWhenItIsBack) {
    fake.kill();
    EXPECT_LT(tryEverything(), patience);
    EXPECT_EQ(last, OrvErrorNotFound);
    EXPECT_FALSE(find("FC0001"));
    fake.restart();
    expectReturn();
}

TEST_F(LostCamera, isLostWhenItFallsSilent) {
    const auto packetSize = sdk::feature(*sdk::stream(*camera), "GVSPPacketSize");
    fake.pause();
    std::int64_t bytes = 0;
    EXPECT_EQ(packetSize->GetValue(bytes), OrvErrorNotFound) << "rather than a size of " << bytes;
    EXPECT_LT(tryEverything(), patience);
    EXPECT_EQ(last, OrvErrorNotFound);
    fake.resume();
    expectReturn();
}

TEST_F(LostCamera, isLostUntilReopenedWhenItWasSwitchedOffAndOn) {
    fake.kill();
    fake.restart();
    std::int64_t value = 0;
    EXPECT_TRUE(eventually([&] { return width->GetValue(value) == OrvErrorNotFound; }));
    EXPECT_LT(tryEverything(), milliseconds(500));
    expectReturn();
}

TEST_F(LostCamera, delaysTheShutdownByFewSeconds) {
    const auto receiver = std::make_shared<Receiver>(camera);
    ASSERT_EQ(sdk::start(*camera, receiver), OrvErrorSuccess);
    fake.kill();
    const auto begun = Clock::now();
    ASSERT_EQ(sdk::system().Shutdown(), OrvErrorSuccess);
    EXPECT_LT(Clock::now() - begun, patience + milliseconds(1000));
    std::int64_t value = 0;
    EXPECT_EQ(width->GetValue(value), OrvErrorApiNotStarted);
}

TEST_F(LostCamera, isKeptThroughAPauseOfASecond) {
    fake.pause();
    std::this_thread::sleep_for(milliseconds(1000));
    fake.resume();
    EXPECT_EQ(get<std::int64_t>(*camera, "Width"), 1024);
    EXPECT_EQ(find("FC0001"), camera);
}

TEST(SilentCameras, delayTheirOpeningOneAfterAnotherByFewSeconds) {
    std::vector<std::unique_ptr<fakecamera::FakeCameraProcess>> fakes;
    for (const char* const place : {"127.0.0.2", "127.0.0.3", "127.0.0.4", "127.0.0.5"})
        fakes.push_back(std::make_unique<fakecamera::FakeCameraProcess>(
            place, std::vector<std::string>{"--serial", place}));
    const cameras::Started started;
    const auto found = sdk::cameras();
    ASSERT_EQ(found.size(), fakes.size());
    for (const auto& fake : fakes)
        fake->pause();
    const auto begun = Clock::now();
    for (const auto& camera : found) {
        OrvAccessModeType modes = OrvAccessModeUnknown;
        EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorNotFound);
        EXPECT_EQ(camera->GetPermittedAccess(modes), OrvErrorNotFound);
    }
    EXPECT_LT(Clock::now() - begun, milliseconds(2000));
    for (const auto& fake : fakes)
        fake->resume();
    for (const auto& camera : found)
        EXPECT_TRUE(eventually([&] { return camera->Open(OrvAccessModeFull) == OrvErrorSuccess; }));
}

} // namespace
