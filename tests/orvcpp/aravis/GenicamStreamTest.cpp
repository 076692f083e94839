// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/aravis/FakeCameraFixture.h"

namespace {

using sdk::eventually;
using sdk::get;
using sdk::getText;
using sdk::isGapless;
using sdk::Receiver;
using sdk::set;
using Options = std::vector<std::string>;

Options with(Options options, const Options& more) {
    options.insert(options.end(), more.begin(), more.end());
    return options;
}

using cameras::smallFrames;

class GenicamStream : public cameras::OneCamera {
protected:
    explicit GenicamStream(const Options& options = smallFrames) : OneCamera(options) {}
};

TEST_F(GenicamStream, adjustsThePacketSizeToTheLargest) {
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

/// A camera whose frame numbers start near the end of 16 bits, and that counts with 16 or 64 bits.
class Wrapping : public GenicamStream, public testing::WithParamInterface<const char*> {
protected:
    Wrapping()
        : GenicamStream(
              with(smallFrames, {"--first-frame-id", "65520", "--extended-ids", GetParam()})) {}
};

TEST_P(Wrapping, numbersFramesBeyondSixteenBits) {
    const auto receiver = std::make_shared<Receiver>(camera);
    ASSERT_EQ(sdk::start(*camera, receiver), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() >= 40; }));
    ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_TRUE(isGapless(receiver->ids(), 1));
    EXPECT_EQ(receiver->incomplete(), 0);
}

INSTANTIATE_TEST_SUITE_P(Ids, Wrapping, testing::Values("0", "1"), [](const auto& row) {
    return row.param == std::string("1") ? "Extended" : "SixteenBits";
});

/// A camera that drops every 500th packet and does not resend it.
class Losing : public GenicamStream {
protected:
    Losing() : GenicamStream(with(smallFrames, {"--drop-every", "500", "--resend", "0"})) {}
};

TEST_F(Losing, marksFramesWithoutAPacketIncompleteAndKeepsTheirNumber) {
    const auto receiver = std::make_shared<Receiver>(camera);
    ASSERT_EQ(sdk::start(*camera, receiver), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return receiver->count() >= 60; }));
    ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    EXPECT_TRUE(isGapless(receiver->ids(), 1));
    EXPECT_GT(receiver->incomplete(), 0);
    EXPECT_LT(receiver->incomplete(), 15);
}

} // namespace
