// SPDX-License-Identifier: BSD-3-Clause
#include "observer/UsbObserver.h"
#include "tests/observer/UsbScript.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <random>

namespace {

using namespace observer;
using usbscript::Bytes;
using usbscript::leader;
using usbscript::trailer;
using namespace std::chrono_literals;
using testing::DoubleNear;
using testing::FieldsAre;

class UsbObservers : public testing::Test {
protected:
    void send(Bytes data, std::int32_t status = 0) { bus.send({std::move(data), status}); }
    UsbReading observe() {
        while (!bus.isEmpty())
            EXPECT_TRUE(observer.receive(0ms));
        return observer.read();
    }
    /// Complete, incomplete, lost and unjudged frames of the only stream.
    std::array<std::uint64_t, 4> frames() {
        const auto streams = observe().streams;
        if (streams.size() != 1)
            return {};
        const StreamFigures& figures = streams.begin()->second.figures;
        return {figures.framesComplete, figures.framesIncomplete, figures.framesLost,
                figures.framesUnjudged};
    }
    using Counts = std::array<std::uint64_t, 4>;

    std::unique_ptr<usbscript::Monitor> made = std::make_unique<usbscript::Monitor>();
    usbscript::Monitor& bus = *made;
    UsbObserver observer{std::move(made)};
};

TEST_F(UsbObservers, tellWhenTheDataOfFramesCame) {
    bus.sendFrame(0);
    send(leader(1));
    send(Bytes(2000));
    bus.time += 1ms;
    send(Bytes(1200)); // filled up behind the valid payload
    send(trailer(1));
    bus.time += 2s;
    send({}, -ENOENT); // the program asks again and again
    const UsbReading reading = observe();
    ASSERT_EQ(reading.streams.size(), 1U);
    const auto& [key, each] = *reading.streams.begin();
    EXPECT_EQ(key, UsbStreamKey(2, 7, 0x81));
    EXPECT_EQ(each.figures.framesComplete, 2U);
    EXPECT_EQ(each.figures.packets, 8U);
    EXPECT_EQ(each.figures.dataBytes, 6200U);
    EXPECT_THAT(each.timing, FieldsAre(2, 1600us, 1300us, 1100us, DoubleNear(3000 / 300e-6, 1)));
    EXPECT_NEAR(each.silence.count(), 2.0001, 1e-9);
    EXPECT_EQ(bus.ringSize, 1200U * 1024);
    EXPECT_EQ(observe().streams.at(key).timing.frames, 0U) << "those since the reading before";
}

TEST_F(UsbObservers, countFramesThatLackSomething) {
    send(Bytes(500)); // of a frame whose leader came before
    send(trailer(9));
    bus.sendFrame(10);
    EXPECT_EQ(frames(), (Counts{1, 0, 0, 0}));
    send(leader(11)); // without trailer
    send(Bytes(3000));
    bus.sendFrame(12);
    EXPECT_EQ(frames(), (Counts{2, 1, 0, 0}));
    send(leader(13));
    send(Bytes(2999));
    send(trailer(13));
    EXPECT_EQ(frames(), (Counts{2, 2, 0, 0})) << "a byte is missing";
    send(leader(14));
    send(Bytes(3000));
    send(trailer(14, 0xA101));
    EXPECT_EQ(frames(), (Counts{2, 3, 0, 0})) << "the camera says so";
    send(leader(15));
    send(Bytes(3000), -EOVERFLOW);
    send(trailer(15));
    EXPECT_EQ(frames(), (Counts{2, 4, 0, 0})) << "the transfer failed";
    Bytes cut = leader(16);
    cut.resize(19);
    send(cut);
    send(Bytes(3000));
    send(trailer(16));
    EXPECT_EQ(frames(), (Counts{2, 5, 0, 0})) << "the leader was cut";
    bus.sendFrame(20);
    EXPECT_EQ(frames(), (Counts{3, 5, 3, 0}));
    EXPECT_EQ(observe().streams.begin()->second.figures.gaps, 1U);
    send(leader(21));
    send(trailer(23));
    EXPECT_EQ(frames(), (Counts{3, 7, 4, 0})) << "22 was lost, 23 has no leader";
    send(trailer(23));
    bus.sendFrame(24);
    EXPECT_EQ(frames(), (Counts{4, 7, 4, 0}));
    // More than a burst, in a time in which a camera can send so many.
    bus.time += 200ms;
    send(leader(2024));
    bus.time += 200ms;
    bus.sendFrame(4024);
    EXPECT_EQ(frames(), (Counts{5, 8, 4 + 2 * 1999, 0}));
}

TEST_F(UsbObservers, takeAStopForNoLoss) {
    bus.sendFrame(1'000'000'000'000);
    send(leader(1'000'000'000'001));
    for (std::uint64_t id : {0U, 1U, 0U, 0U}) // three acquisitions
        bus.sendFrame(id);
    EXPECT_EQ(frames(), (Counts{5, 0, 0, 1}));
    bus.sendFrame(5000);
    EXPECT_EQ(frames(), (Counts{6, 0, 0, 1})) << "too far away for a loss";
    // A camera that counts on: the program took its requests back, and begins again later.
    send(leader(5001));
    send({}, -ENOENT);
    bus.time += 1s;
    bus.sendFrame(5002);
    EXPECT_EQ(frames(), (Counts{7, 0, 0, 2}));
    // Requests that end early within a frame, and the stream goes on.
    send(leader(5003));
    send({}, -ECONNRESET);
    bus.sendFrame(5004);
    EXPECT_EQ(frames(), (Counts{8, 1, 0, 2}));
}

TEST_F(UsbObservers, doNotBlameTheCameraForWhatTheyMissed) {
    bus.sendFrame(1);
    send(leader(2));
    frames();
    // Parts of frame 2, frames 3 and 4, and the leader of 5 had no room.
    bus.time += 1ms;
    bus.dropped = 11;
    send(trailer(5));
    bus.sendFrame(6);
    EXPECT_EQ(frames(), (Counts{2, 0, 0, 4}));
    EXPECT_EQ(observe().missedEvents, 11U);
    bus.time += 1ms;
    observe();
    bus.sendFrame(7);
    bus.sendFrame(9);
    EXPECT_EQ(frames(), (Counts{4, 0, 1, 4})) << "the kernel missed nothing there";
    // Frame 210 was missed, and is found out behind the events that are taken at once, after
    // another miss.
    for (std::uint64_t id = 10; id < 210; ++id)
        bus.sendFrame(id);
    bus.sendFrame(211);
    for (const std::uint32_t dropped : {4U, 0U, 1U}) {
        bus.dropped = dropped;
        bus.time += 1ms;
        observer.receive(0ms);
    }
    EXPECT_EQ(frames(), (Counts{205, 0, 1, 5}));
    bus.dropped = 2;
    bus.time += 1ms;
    observer.receive(0ms);
    bus.time += 1ms;
    bus.sendFrame(213);
    EXPECT_EQ(frames(), (Counts{206, 0, 1, 6})) << "missed before the frame that tells";
    // The clock is set back, and 214 was missed.
    bus.dropped = 1;
    bus.time -= 1min;
    bus.sendFrame(215);
    EXPECT_EQ(frames(), (Counts{207, 0, 1, 7}));
    bus.time += 1s;
    bus.sendFrame(216);
    bus.sendFrame(218);
    EXPECT_EQ(frames(), (Counts{209, 0, 2, 7})) << "the miss has ended";
    bus.end = -ENODEV;
    EXPECT_FALSE(observer.receive(0ms)) << "an error of the file";
}

TEST_F(UsbObservers, doNotBlameANewCameraForWhatTheyMissed) {
    bus.sendFrame(1);
    bus.dropped = 7;
    bus.sendFrame(5);
    EXPECT_EQ(frames(), (Counts{2, 0, 0, 3}));
}

TEST_F(UsbObservers, tellStreamsApartFromEachOtherAndFromOtherDevices) {
    usbscript::Event second;
    second.endpoint = 0x82;
    usbscript::Event other;
    other.device = 8;
    for (std::uint64_t id = 0; id < 3; ++id) {
        bus.sendFrame(id);
        bus.sendFrame(id + 100, second);
        bus.sendFrame(id * 2, other);
    }
    // Frames that are none: submitted, no bulk, to the device, and not captured.
    for (const auto& [type, transferType, endpoint, dataFlag] :
         {std::tuple('S', 3, 0x83, 0), {'C', 1, 0x83, 0}, {'C', 3, 3, 0}, {'C', 3, 0x83, 'D'}}) {
        usbscript::Event none;
        none.type = type;
        none.transferType = static_cast<std::uint8_t>(transferType);
        none.endpoint = static_cast<std::uint8_t>(endpoint);
        none.dataFlag = static_cast<char>(dataFlag);
        bus.sendFrame(0, none);
    }
    usbscript::Event disk;
    disk.device = 9;
    disk.data = leader(4);
    bus.send(disk); // a file that begins like a leader
    std::vector<std::tuple<int, int, std::uint64_t, std::uint64_t>> seen;
    for (const auto& [key, each] : observe().streams)
        seen.emplace_back(std::get<1>(key), std::get<2>(key), each.figures.framesComplete,
                          each.figures.framesLost);
    EXPECT_THAT(seen, testing::ElementsAre(FieldsAre(7, 0x81, 3, 0), FieldsAre(7, 0x82, 3, 0),
                                           FieldsAre(8, 0x81, 3, 2)));
}

TEST_F(UsbObservers, continueAStreamUnderAnotherNumber) {
    bus.sendFrame(0);
    observe();
    bus.sendFrame(1);
    usbscript::Event again;
    again.device = 8;
    bus.sendFrame(0, again);
    while (!bus.isEmpty())
        observer.receive(0ms);
    observer.join({2, 7, 0x81}, {2, 8, 0x81});
    for (const std::uint64_t known : {4U, 12U}) {
        const UsbStreamReading each = observer.read().streams.at({2, 8, 0x81});
        EXPECT_EQ(each.figures.packets, 12U);
        EXPECT_EQ(each.known.packets, known) << "at the reading before";
    }
}

TEST_F(UsbObservers, outliveGarbage) {
    std::mt19937 random(1); // NOLINT: the same bytes each time
    const auto any = [&random](unsigned most) {
        return static_cast<std::uint8_t>(random() % most);
    };
    for (int i = 0; i < 100'000; ++i) {
        usbscript::Event event;
        event.data.resize(any(80));
        std::generate(event.data.begin(), event.data.end(), [&] { return any(4) ? 0 : any(255); });
        const Bytes magic = any(2) ? leader(any(4)) : trailer(any(4), any(2), any(99));
        if (any(4))
            std::copy_n(magic.begin(), std::min<std::size_t>(event.data.size(), 1U + any(28)),
                        event.data.begin());
        event.device = any(128);
        event.endpoint |= any(16);
        event.status = any(8) ? 0 : -any(130);
        event.type = any(9) ? 'C' : static_cast<char>(any(128));
        bus.send(event);
    }
    const auto streams = observe().streams;
    EXPECT_LE(streams.size(), 64U);
    EXPECT_GT(streams.size(), 0U);
    for (const auto& [key, each] : streams)
        EXPECT_LT(each.figures.framesLost, 300'000U);
    bus.time += 11s;
    usbscript::Event camera;
    camera.bus = 1;
    bus.sendFrame(0, camera);
    EXPECT_EQ(observe().streams.count({1, 7, 0x81}), 1U)
        << "a camera takes the place of a silent one";
}

TEST(UsbMonitors, sayWhyTheyCannotBeOpened) {
    std::error_code error;
    EXPECT_EQ(UsbMonitor::open("/none/usbmon2", error), nullptr);
    EXPECT_EQ(error, std::errc::no_such_file_or_directory);
    // A file that is no monitor: it takes no request, and wakes whoever waits.
    const auto file = UsbMonitor::open("/dev/null", error);
    ASSERT_NE(file, nullptr) << error.message();
    file->wake();
    file->wait(1min);
    EXPECT_LT(file->control(0x9204UL, 8192UL), 0);
}

} // namespace
