// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/GObjects.h"
#include "tests/orvcpp/aravis/FakeCameraFixture.h"
#include "tests/support/HostStalls.h"

#include <deque>

namespace {

using namespace sdk;
using orv::aravis::GObjectPtr;

class GenicamStream : public cameras::OneCamera {};

TEST_F(GenicamStream, adjustsThePacketSizeToTheLargest) {
    const auto stream = sdk::stream(*camera);
    const auto adjust = sdk::feature(*stream, "GVSPAdjustPacketSize");
    EXPECT_EQ(sdk::getText(*stream, "GVSPDriver"), "Filter");
    ASSERT_EQ(set(*stream, "GVSPPacketSize", std::int64_t{1000}), OrvErrorSuccess);
    EXPECT_EQ(get<std::int64_t>(*camera, "GevSCPSPacketSize"), 1000);
    ASSERT_EQ(set(*camera, "TLParamsLocked", std::int64_t{1}), OrvErrorSuccess);
    EXPECT_EQ(set(*stream, "GVSPPacketSize", std::int64_t{1400}), OrvErrorInvalidAccess);
    EXPECT_EQ(adjust->RunCommand(), OrvErrorInvalidAccess);
    ASSERT_EQ(set(*camera, "TLParamsLocked", std::int64_t{0}), OrvErrorSuccess);
    ASSERT_EQ(adjust->RunCommand(), OrvErrorSuccess);
    EXPECT_TRUE(eventually([&] { return sdk::ask(*adjust, &sdk::Feature::IsCommandDone); }));
    const auto sizes = sdk::range<std::int64_t>(*sdk::feature(*stream, "GVSPPacketSize"));
    EXPECT_GE(get<std::int64_t>(*stream, "GVSPPacketSize"), sizes.second - 8);
    const auto receiver = sdk::startReceiving(camera);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 5; }));
    EXPECT_EQ(set(*stream, "GVSPPacketSize", std::int64_t{1000}), OrvErrorInvalidAccess);
}

TEST_F(GenicamStream, unlocksTheSettingsThatAProgramLeftLocked) {
    ASSERT_EQ(set(*camera, "TLParamsLocked", std::int64_t{1}), OrvErrorSuccess);
    ASSERT_EQ(set(*camera, "Width", std::int64_t{64}), OrvErrorInvalidAccess);
    ASSERT_EQ(camera->Close(), OrvErrorSuccess);
    ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    EXPECT_EQ(set(*camera, "Width", std::int64_t{64}), OrvErrorSuccess);
}

TEST_F(GenicamStream, countsFramesWithoutImagesWhereHeadersAreEnough) {
    const auto stream = sdk::stream(*camera);
    for (const bool headersOnly : {true, false, true}) {
        ASSERT_EQ(set(*stream, "GVSPHeadersOnly", headersOnly), OrvErrorSuccess);
        const auto receiver = sdk::startReceiving(camera, 5, true);
        EXPECT_EQ(set(*stream, "GVSPHeadersOnly", headersOnly), OrvErrorInvalidAccess);
        EXPECT_TRUE(eventually([&] { return receiver->count() == 5; }));
        ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
        EXPECT_EQ(receiver->incomplete, 0);
        EXPECT_EQ(receiver->ids(), sdk::gapless(1, 5));
        const auto frame = receiver->takeKept().back();
        EXPECT_EQ(sdk::ask(*frame, &sdk::Frame::GetBufferSize),
                  get<std::int64_t>(*camera, "PayloadSize"));
        EXPECT_GT(sdk::ask(*frame, &sdk::Frame::GetWidth), 0U);
        const std::uint8_t* image = nullptr;
        EXPECT_EQ(frame->GetImage(image), headersOnly ? OrvErrorNotAvailable : OrvErrorSuccess);
    }
}

/// The first frame of the camera, received by the library.
std::vector<std::uint8_t> receiveByLibrary(const char* address) {
    const GObjectPtr<ArvCamera> camera(arv_camera_new(address, nullptr));
    const GObjectPtr<ArvStream> stream(
        arv_camera_create_stream(camera.get(), nullptr, nullptr, nullptr));
    if (!stream)
        return {};
    const auto payload = static_cast<std::size_t>(arv_camera_get_payload(camera.get(), nullptr));
    arv_stream_push_buffer(stream.get(), arv_buffer_new(payload, nullptr));
    arv_camera_start_acquisition(camera.get(), nullptr);
    const GObjectPtr<ArvBuffer> buffer(arv_stream_timeout_pop_buffer(stream.get(), 5'000'000));
    arv_camera_stop_acquisition(camera.get(), nullptr);
    if (!buffer || arv_buffer_get_status(buffer.get()) != ARV_BUFFER_STATUS_SUCCESS)
        return {};
    EXPECT_EQ(arv_buffer_get_n_parts(buffer.get()), 3U);
    EXPECT_EQ(arv_buffer_get_part_height(buffer.get(), 0), 66);
    std::size_t size = 0;
    const auto* const bytes =
        static_cast<const std::uint8_t*>(arv_buffer_get_data(buffer.get(), &size));
    return {bytes, bytes + size};
}

TEST(MultiPartStream, bringsWhatTheLibraryReceives) {
    // 320 x 200 pixels in three parts of 66, 67 and 67 lines, none of which fills its last packet.
    std::vector<std::string> options{"--parts", "3", "--packet-size", "1000"};
    options.insert(options.end(), cameras::smallFrames.begin(), cameras::smallFrames.end());
    const fakecamera::FakeCameraProcess fake(fakecamera::onlyAddress, options);
    const std::vector<std::uint8_t> expected = receiveByLibrary(fakecamera::onlyAddress);
    ASSERT_EQ(expected.size(), 64'000U);
    const cameras::Started started;
    const auto camera = cameras::find("FC0001");
    ASSERT_TRUE(camera);
    ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    const auto receiver = sdk::startReceiving(camera, 5, true);
    EXPECT_TRUE(eventually([&] { return receiver->count() == 5; }));
    ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    const auto frame = receiver->takeKept().front();
    EXPECT_EQ(sdk::ask(*frame, &sdk::Frame::GetReceiveStatus), OrvFrameStatusComplete);
    EXPECT_EQ(sdk::ask(*frame, &sdk::Frame::GetWidth), 320U);
    EXPECT_EQ(sdk::ask(*frame, &sdk::Frame::GetHeight), 66U);
    const std::uint8_t* image = nullptr;
    ASSERT_EQ(frame->GetImage(image), OrvErrorSuccess);
    EXPECT_EQ(std::vector<std::uint8_t>(image, image + expected.size()), expected);
}

/// With the packet ring, and with a UDP socket.
class GenicamStreams : public testing::TestWithParam<bool> {
protected:
    static std::string configuration() {
        return std::string(R"({"providers": [{"type": "genicam", "packetSocket": )") +
               (GetParam() ? "true" : "false") + "}]}";
    }
};

TEST_P(GenicamStreams, numberFramesBeyondSixteenBitsAlsoIncompleteOnes) {
    // Two cameras whose frame numbers start near the end of 16 bits, and count with 16 or 64 bits;
    // one that loses packets and sends them again, one that does not.
    const std::vector<std::string> cases[] = {{"--first-frame-id", "65520", "--extended-ids", "0"},
                                              {"--first-frame-id", "65520", "--extended-ids", "1"},
                                              {"--loss", "10", "--extended-ids", "1"},
                                              {"--drop-every", "500", "--resend", "0"}};
    std::deque<fakecamera::FakeCameraProcess> fakes;
    for (auto options : cases) {
        const std::string number = std::to_string(fakes.size());
        options.insert(options.end(), cameras::smallFrames.begin(), cameras::smallFrames.end());
        options.insert(options.end(), {"--serial", number});
        fakes.emplace_back("127.0.0.1" + number, options);
    }
    const sdk::Running started(configuration());
    for (const std::string serial : {"0", "1", "2", "3"}) {
        SCOPED_TRACE(serial);
        const auto camera = cameras::find(serial);
        ASSERT_TRUE(camera);
        ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
        const fakecamera::HostStalls stalls;
        // Frames that wait for packets keep their buffers.
        const auto receiver = sdk::startReceiving(camera, 20);
        EXPECT_EQ(sdk::getText(*sdk::stream(*camera), "GVSPDriver"),
                  GetParam() ? "Filter" : "Socket");
        EXPECT_TRUE(eventually([&] { return receiver->count() >= 60; }));
        ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
        const bool isLosing = serial == "3";
        const auto incomplete = static_cast<std::uint64_t>(receiver->incomplete);
        EXPECT_GE(incomplete, isLosing ? 1U : 0U);
        EXPECT_LE(incomplete, (isLosing ? 14U : 0U) + stalls.count());
        EXPECT_EQ(receiver->ids(), sdk::gapless(1, receiver->count()));
    }
}

TEST_P(GenicamStreams, bringAllFramesThatWereSentBeforeTheStop) {
    const fakecamera::FakeCameraProcess fake(
        fakecamera::onlyAddress,
        {"--width", "320", "--height", "200", "--frame-rate", "1000", "--exposure", "10"});
    const sdk::Running started(configuration());
    const auto camera = cameras::find("FC0001");
    ASSERT_TRUE(camera);
    ASSERT_EQ(camera->Open(OrvAccessModeFull), OrvErrorSuccess);
    const auto receiver = sdk::startReceiving(camera, 50);
    EXPECT_TRUE(eventually([&] { return receiver->count() > 100; }));
    ASSERT_EQ(camera->StopContinuousImageAcquisition(), OrvErrorSuccess);
    // The stop cuts at most one.
    EXPECT_GE(static_cast<std::int64_t>(receiver->count()) + 1,
              get<std::int64_t>(*camera, "TestFramesSent"));
}

INSTANTIATE_TEST_SUITE_P(Sources, GenicamStreams, testing::Bool(),
                         [](const auto& test) { return test.param ? "PacketRing" : "UdpSocket"; });

} // namespace
