// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/aravis/Cameras.h"

namespace {

using sdk::eventually;
using sdk::get;
using sdk::getText;
using sdk::Receiver;
using sdk::set;
using Options = std::vector<std::string>;

/// Whether the numbers go up by one from \p first.
testing::AssertionResult isGapless(const std::vector<std::uint64_t>& ids, std::uint64_t first) {
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (ids[i] != first + i)
            return testing::AssertionFailure() << "frame " << i << " is number " << ids[i];
    }
    return testing::AssertionSuccess();
}

const Options smallFrames{"--width", "320", "--height", "200", "--frame-rate", "100"};

Options with(Options options, const Options& more) {
    options.insert(options.end(), more.begin(), more.end());
    return options;
}

class Streaming : public cameras::OneCamera {
protected:
    explicit Streaming(const Options& options = smallFrames) : OneCamera(options) {}

    void TearDown() override { camera->Close(); }
};

/// Keeps what the last frame says of itself.
class Inspector : public OrvCPP::IFrameObserver {
public:
    explicit Inspector(std::weak_ptr<OrvCPP::Camera> camera) : m_camera(std::move(camera)) {}
    void FrameReceived(const std::shared_ptr<OrvCPP::Frame>& frame) override {
        const std::lock_guard lock(mutex);
        frame->GetReceiveStatus(status);
        frame->GetBufferSize(size);
        frame->GetWidth(width);
        frame->GetHeight(height);
        frame->GetPixelFormat(format);
        ++count;
        const auto camera = m_camera.lock();
        again = camera->QueueFrame(frame);
        twice = camera->QueueFrame(frame);
        stop = camera->StopContinuousImageAcquisition();
    }

    std::mutex mutex;
    int count = 0;
    OrvFrameStatusType status = OrvFrameStatusInvalid;
    std::uint32_t size = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    OrvPixelFormatType format{};
    OrvErrorType again = OrvErrorUnknown;
    OrvErrorType twice = OrvErrorUnknown;
    OrvErrorType stop = OrvErrorUnknown;

private:
    const std::weak_ptr<OrvCPP::Camera> m_camera;
};

TEST_F(Streaming, DeliversWhatTheCameraSendsWithoutAGapFromOneAgainAndAgain) {
    for (int run = 0; run < 3; ++run) {
        const auto before = get<std::int64_t>(*camera, "TestFramesSent");
        const auto receiver = std::make_shared<Receiver>(camera);
        ASSERT_EQ(sdk::start(*camera, receiver), OrvErrorSuccess);
        EXPECT_EQ(sdk::start(*camera, receiver), OrvErrorAlreadyDone);
        EXPECT_TRUE(eventually([&] { return receiver->count() >= 30; }));
        ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
        EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorAlreadyDone);
        EXPECT_TRUE(isGapless(receiver->ids(), 1)) << "run " << run;
        EXPECT_EQ(receiver->incomplete(), 0) << "run " << run;
        const auto sent = get<std::int64_t>(*camera, "TestFramesSent") - before;
        const auto received = static_cast<std::int64_t>(receiver->count());
        EXPECT_GE(sent, received);
        EXPECT_LE(sent - received, 1) << "the one that the stop has cut";
        EXPECT_EQ(get<std::int64_t>(*sdk::stream(*camera), "StatFrameDelivered"), received);
    }
}

TEST_F(Streaming, FrameTellsItsImageAndLocksTheSettings) {
    ASSERT_EQ(set(*camera, "PixelFormat", "Mono16"), OrvErrorSuccess);
    const auto inspector = std::make_shared<Inspector>(camera);
    ASSERT_EQ(sdk::start(*camera, inspector), OrvErrorSuccess);
    EXPECT_EQ(get<std::int64_t>(*camera, "TLParamsLocked"), 1) << "which no category shows";
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorInvalidAccess);
    EXPECT_TRUE(eventually([&] {
        const std::lock_guard lock(inspector->mutex);
        return inspector->count > 10;
    }));
    EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_EQ(inspector->status, OrvFrameStatusComplete);
    EXPECT_EQ(inspector->size, 320U * 200 * 2);
    EXPECT_EQ(inspector->width, 320U);
    EXPECT_EQ(inspector->height, 200U);
    EXPECT_EQ(inspector->format, OrvPixelFormatMono16);
    EXPECT_EQ(inspector->again, OrvErrorSuccess);
    EXPECT_EQ(inspector->twice, OrvErrorInUse);
    EXPECT_EQ(inspector->stop, OrvErrorInvalidCall);
    EXPECT_EQ(set(*camera, "Width", std::int64_t{160}), OrvErrorSuccess);
}

TEST_F(Streaming, FramesThatAreKeptGoBackOnlyWhileTheAcquisitionRuns) {
    const auto receiver = std::make_shared<Receiver>(camera, true);
    ASSERT_EQ(sdk::start(*camera, receiver, 3), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() == 3; }));
    const auto stream = sdk::stream(*camera);
    EXPECT_TRUE(eventually([&] { return get<std::int64_t>(*stream, "StatFrameUnderrun") > 0; }));
    auto kept = receiver->takeKept();
    EXPECT_EQ(camera->QueueFrame(kept.at(0)), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 3; }));
    EXPECT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_EQ(camera->QueueFrame(kept.at(1)), OrvErrorInvalidCall);
    const std::uint8_t* image = nullptr;
    EXPECT_EQ(kept.at(1)->GetImage(image), OrvErrorSuccess);
    EXPECT_GE(image[0], 0) << "its memory is still there";
}

TEST_F(Streaming, PacketSizeIsAdjustedToTheLargest) {
    const auto stream = sdk::stream(*camera);
    EXPECT_EQ(getText(*stream, "GVSPDriver"), "Socket");
    ASSERT_EQ(set(*stream, "GVSPPacketSize", std::int64_t{1000}), OrvErrorSuccess);
    EXPECT_EQ(get<std::int64_t>(*camera, "GevSCPSPacketSize"), 1000);
    ASSERT_EQ(set(*camera, "TLParamsLocked", std::int64_t{1}), OrvErrorSuccess);
    EXPECT_EQ(set(*stream, "GVSPPacketSize", std::int64_t{1400}), OrvErrorInvalidAccess);
    EXPECT_EQ(sdk::feature(*stream, "GVSPAdjustPacketSize")->RunCommand(), OrvErrorInvalidAccess);
    ASSERT_EQ(set(*camera, "TLParamsLocked", std::int64_t{0}), OrvErrorSuccess);
    ASSERT_EQ(sdk::feature(*stream, "GVSPAdjustPacketSize")->RunCommand(), OrvErrorSuccess);
    bool done = false;
    EXPECT_TRUE(eventually([&] {
        sdk::feature(*stream, "GVSPAdjustPacketSize")->IsCommandDone(done);
        return done;
    }));
    std::int64_t least = 0;
    std::int64_t most = 0;
    sdk::feature(*stream, "GVSPPacketSize")->GetRange(least, most);
    EXPECT_GE(get<std::int64_t>(*stream, "GVSPPacketSize"), most - 8);
    const auto receiver = std::make_shared<Receiver>(camera);
    ASSERT_EQ(sdk::start(*camera, receiver), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 5; }));
    EXPECT_EQ(set(*stream, "GVSPPacketSize", std::int64_t{1000}), OrvErrorInvalidAccess);
}

/// A camera whose numbers are near the end of 16 bits when it starts, and that counts with as many
/// bits, or with 64.
class Wrapping : public Streaming, public testing::WithParamInterface<const char*> {
protected:
    Wrapping()
        : Streaming(
              with(smallFrames, {"--first-frame-id", "65520", "--extended-ids", GetParam()})) {}
};

TEST_P(Wrapping, NumbersGoOnOverTheEndOfSixteenBits) {
    const auto receiver = std::make_shared<Receiver>(camera);
    ASSERT_EQ(sdk::start(*camera, receiver), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() >= 40; }));
    ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_TRUE(isGapless(receiver->ids(), 1));
    EXPECT_EQ(receiver->incomplete(), 0);
}

INSTANTIATE_TEST_SUITE_P(ExtendedIds, Wrapping, testing::Values("0", "1"));

/// A camera that leaves out a packet now and then, and does not send it again.
class Losing : public Streaming {
protected:
    Losing() : Streaming(with(smallFrames, {"--drop-every", "500", "--resend", "0"})) {}
};

TEST_F(Losing, FramesWithoutAPacketAreIncompleteAndKeepTheirNumber) {
    const auto receiver = std::make_shared<Receiver>(camera);
    ASSERT_EQ(sdk::start(*camera, receiver), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() >= 60; }));
    ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_TRUE(isGapless(receiver->ids(), 1));
    EXPECT_GT(receiver->incomplete(), 0);
    EXPECT_LT(receiver->incomplete(), 15);
}

} // namespace
