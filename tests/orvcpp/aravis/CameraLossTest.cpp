// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/aravis/FakeCameraFixture.h"

#include <deque>

namespace {

using namespace cameras;
using sdk::eventually;
using std::chrono::milliseconds;

class LostCamera : public cameras::OneCamera {
protected:
    void SetUp() override {
        OneCamera::SetUp();
        width = sdk::feature(*camera, "Width");
    }
    /// Waits until it can be opened and streams.
    void expectReturn() {
        EXPECT_TRUE(eventually([this] { return find("FC0001") == camera; }));
        EXPECT_TRUE(
            eventually([this] { return camera->Open(OrvAccessModeFull) == OrvErrorSuccess; }));
        width = sdk::feature(*camera, "Width");
        const auto receiver = sdk::startReceiving(camera);
        EXPECT_TRUE(eventually([&] { return receiver->count() > 5; }));
        EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    }

    std::shared_ptr<OrvCPP::Feature> width;
};

TEST_F(LostCamera, delaysCallsBrieflyAndIsLostUntilReopened) {
    // It dies.
    fake.kill();
    EXPECT_LT(callAbsent(*camera, *width), patience);
    EXPECT_FALSE(find("FC0001"));
    fake.restart();
    expectReturn();

    // It falls silent.
    const auto packetSize = sdk::feature(*sdk::stream(*camera), "GVSPPacketSize");
    fake.pause();
    std::int64_t bytes = 0;
    EXPECT_EQ(packetSize->GetValue(bytes), OrvErrorNotFound) << "rather than a size of " << bytes;
    EXPECT_LT(callAbsent(*camera, *width), patience);
    fake.resume();
    expectReturn();

    // It is switched off and on.
    fake.kill();
    fake.restart();
    EXPECT_TRUE(eventually([this] { return sdk::readInteger(*width) == OrvErrorNotFound; }));
    EXPECT_LT(callAbsent(*camera, *width), milliseconds(500));
    expectReturn();
}

TEST_F(LostCamera, isKeptThroughAPauseOfASecondAndDelaysTheShutdownByFewSeconds) {
    fake.pause();
    std::this_thread::sleep_for(milliseconds(1000));
    fake.resume();
    EXPECT_EQ(sdk::get<std::int64_t>(*camera, "Width"), 1024);
    EXPECT_EQ(find("FC0001"), camera);

    ASSERT_EQ(sdk::start(*camera, std::make_shared<sdk::Receiver>(camera)), OrvErrorSuccess);
    fake.kill();
    const auto begun = Clock::now();
    ASSERT_EQ(sdk::system().Shutdown(), OrvErrorSuccess);
    EXPECT_LT(Clock::now() - begun, patience + milliseconds(1000));
}

TEST(SilentCameras, delayTheirOpeningOneAfterAnotherByFewSeconds) {
    std::deque<fakecamera::FakeCameraProcess> fakes;
    for (const char* const place : {"127.0.0.2", "127.0.0.3", "127.0.0.4", "127.0.0.5"})
        fakes.emplace_back(place, std::vector<std::string>{"--serial", place});
    const cameras::Started started;
    const auto found = sdk::cameras();
    ASSERT_EQ(found.size(), fakes.size());
    for (auto& fake : fakes)
        fake.pause();
    const auto begun = Clock::now();
    for (const auto& camera : found) {
        OrvAccessModeType modes = OrvAccessModeUnknown;
        EXPECT_EQ(camera->Open(OrvAccessModeFull), OrvErrorNotFound);
        EXPECT_EQ(camera->GetPermittedAccess(modes), OrvErrorNotFound);
    }
    EXPECT_LT(Clock::now() - begun, milliseconds(2000));
}

} // namespace
