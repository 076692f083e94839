// SPDX-License-Identifier: BSD-3-Clause
#include "observer/ObservedStream.h"
#include "tests/gvsp/StreamScript.h"

#include <gmock/gmock.h>

#include <random>
#include <set>

namespace {

using namespace observer;
using namespace std::chrono_literals;
using script::trailerNumber;

/// A stream whose packets come every 100 us.
class Watched {
public:
    explicit Watched(script::Camera from = {}) : camera(from) {}

    void send(const script::Bytes& bytes) {
        m_now += 100us;
        // Of data, the ring keeps the header.
        const bool isCut = bytes.size() > 100;
        gvsp::StreamDatagram datagram;
        datagram.data = bytes.data();
        datagram.size = bytes.size();
        datagram.captured = isCut ? 28 : bytes.size();
        stream.packet(datagram, m_now);
    }
    void sendBlock(std::uint64_t block, const std::set<std::uint32_t>& lost = {}) {
        for (std::uint32_t number = 0; number <= trailerNumber; ++number) {
            if (lost.count(number) == 0)
                send(camera.any(block, number));
        }
    }
    void pass(std::chrono::milliseconds time) {
        m_now += time;
        stream.advance(m_now);
    }
    StreamFigures figures() {
        pass(300ms);
        return stream.figures();
    }
    ObservedStream::Time now() const { return m_now; }

    const script::Camera camera;
    ObservedStream stream;

private:
    ObservedStream::Time m_now{std::chrono::hours(1)};
};

TEST(ObservedStream, judgesFramesOnceOneHasToldTheirSize) {
    for (const bool hasExtendedIds : {false, true}) {
        Watched watched({hasExtendedIds});
        // It begins in the middle of a frame; the next one lacks what tells its size.
        watched.sendBlock(700, {0, 1, 5});
        watched.sendBlock(701, {4});
        EXPECT_FALSE(watched.stream.isKnown());
        watched.sendBlock(702);
        EXPECT_TRUE(watched.stream.isKnown());
        watched.sendBlock(703);
        watched.sendBlock(704, {2, 5});
        watched.sendBlock(706);
        const StreamFigures figures = watched.figures();
        EXPECT_EQ(figures.framesComplete, 2U);
        EXPECT_EQ(figures.framesIncomplete, 1U);
        EXPECT_EQ(figures.framesLost, 1U);
        EXPECT_EQ(figures.packetsMissing, 2U) << "the trailer, too";
        EXPECT_EQ(figures.framesUnjudged, 0U);
        EXPECT_EQ(figures.packets, 3U + 5 + 6 + 6 + 4 + 6);
    }
}

TEST(ObservedStream, followsOtherSizes) {
    Watched watched;
    const auto sendSmall = [&watched](std::uint64_t block) {
        watched.send(watched.camera.leader(block, 1000 * block));
        watched.send(watched.camera.data(block, 1));
        watched.send(watched.camera.packet(script::Data, block, 2, script::Bytes(50)));
        watched.send(watched.camera.packet(script::Trailer, block, 3, script::Bytes(8)));
    };
    std::uint64_t block = 1;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 4; ++j)
            watched.sendBlock(block++);
        for (int j = 0; j < 4; ++j)
            sendSmall(block++);
    }
    // Much larger: the first one is more than was expected.
    for (int j = 0; j < 4; ++j, ++block) {
        watched.send(watched.camera.leader(block, 1000 * block));
        for (std::uint32_t number = 1; number < 900; ++number)
            watched.send(watched.camera.packet(script::Data, block, number,
                                               script::Bytes(watched.camera.dataSize())));
        watched.send(watched.camera.packet(script::Trailer, block, 900, script::Bytes(8)));
    }
    StreamFigures figures = watched.figures();
    EXPECT_EQ(figures.framesIncomplete + figures.framesLost, 0U);
    EXPECT_EQ(figures.framesComplete + figures.framesUnjudged, 27U);
    EXPECT_LE(figures.framesUnjudged, 1U);
    // Smaller packets: one frame cannot be judged.
    for (int j = 0; j < 4; ++j, ++block) {
        watched.send(watched.camera.leader(block, 1000 * block));
        for (std::uint32_t number = 1; number < 9; ++number)
            watched.send(watched.camera.packet(script::Data, block, number, script::Bytes(530)));
        watched.send(watched.camera.packet(script::Trailer, block, 9, script::Bytes(8)));
    }
    figures = watched.figures();
    EXPECT_EQ(figures.framesIncomplete + figures.framesLost, 0U);
    EXPECT_LE(figures.framesUnjudged, 2U);
    watched.sendBlock(block++);
    watched.sendBlock(block, {3});
    EXPECT_EQ(watched.figures().framesIncomplete, 1U);
}

TEST(ObservedStream, tellsPacketsThatWereSentAgainFromLateAndDoubleOnes) {
    Watched watched;
    watched.sendBlock(1);
    watched.sendBlock(2, {2, 3});
    watched.pass(5ms);
    watched.send(watched.camera.data(2, 3));
    watched.send(watched.camera.data(2, 2));
    // These overtook each other; one comes twice.
    for (const std::uint32_t number : {0U, 2U, 1U, 3U, 3U, 4U, 5U})
        watched.send(watched.camera.any(3, number));
    const StreamFigures figures = watched.figures();
    EXPECT_EQ(figures.framesComplete, 2U);
    EXPECT_EQ(figures.packetsResent, 2U);
    EXPECT_EQ(figures.packetsDuplicate, 1U);
    EXPECT_EQ(figures.packetsMissing, 0U);
}

TEST(ObservedStream, waitsForManyPacketsThatAnotherProgramRequests) {
    Watched watched;
    const auto sendLarge = [&watched](std::uint64_t block, std::uint32_t first,
                                      std::uint32_t last) {
        for (std::uint32_t number = first; number <= last; ++number)
            watched.send(number == 0     ? watched.camera.leader(block, 1000 * block)
                         : number == 400 ? watched.camera.packet(script::Trailer, block, number)
                                         : watched.camera.packet(script::Data, block, number,
                                                                 script::Bytes(530)));
    };
    sendLarge(1, 0, 400);
    sendLarge(2, 0, 10);
    sendLarge(2, 390, 400);
    watched.pass(20ms);
    sendLarge(2, 11, 389);
    const StreamFigures figures = watched.figures();
    EXPECT_EQ(figures.framesComplete, 1U);
    EXPECT_EQ(figures.packetsResent, 379U);
}

TEST(ObservedStream, judgesFramesOfWhichNoneIsWhole) {
    Watched watched;
    for (std::uint64_t block = 1; block <= 40; ++block)
        watched.sendBlock(block, {0, 1, 5});
    EXPECT_GE(watched.figures().framesIncomplete, 5U) << "without trailers";
    for (std::uint64_t block = 41; block <= 80; ++block)
        watched.sendBlock(block, {1, 4});
    EXPECT_GE(watched.figures().framesIncomplete, 45U);
    EXPECT_EQ(watched.figures().framesComplete, 0U);
}

TEST(ObservedStream, countsNoLossWhileItMissedPacketsItself) {
    Watched watched;
    watched.sendBlock(1);
    watched.sendBlock(2);
    watched.stream.noteMissed(watched.now() + 1s);
    watched.sendBlock(3, {1, 2});
    watched.sendBlock(6);
    watched.pass(2s);
    watched.sendBlock(7);
    watched.sendBlock(8, {4});
    const StreamFigures figures = watched.figures();
    EXPECT_EQ(figures.framesUnjudged, 3U) << "one with gaps, two unseen";
    EXPECT_EQ(figures.framesLost, 0U);
    EXPECT_EQ(figures.framesComplete, 3U);
    EXPECT_EQ(figures.framesIncomplete, 1U);
    EXPECT_EQ(figures.packetsMissing, 1U);
    // A slow camera: the frame after the missed one comes much later.
    watched.stream.noteMissed(watched.now() + 1s);
    watched.pass(2s);
    watched.sendBlock(10);
    EXPECT_EQ(watched.figures().framesLost, 0U);
}

TEST(ObservedStream, countsAWrappedAndARestartedCamera) {
    Watched watched;
    for (const unsigned block : {65533U, 65534U, 65535U, 1U, 2U})
        watched.sendBlock(block);
    watched.pass(1500ms);
    // Begins anew, as an acquisition does; the first frame is lost.
    watched.sendBlock(2);
    watched.sendBlock(3);
    EXPECT_EQ(watched.figures().framesComplete, 6U);
    EXPECT_EQ(watched.figures().framesIncomplete, 0U);
    // From a large ID, after a pause that would leave time for many frames.
    watched.sendBlock(900);
    watched.pass(1500ms);
    watched.sendBlock(40000);
    watched.pass(400ms);
    const std::uint64_t lost = watched.figures().framesLost;
    watched.sendBlock(1);
    watched.sendBlock(2);
    EXPECT_EQ(watched.figures().framesLost, lost);
}

TEST(ObservedStream, doesNotCountTheFrameThatAStopCuts) {
    Watched watched;
    watched.sendBlock(1);
    watched.sendBlock(2);
    watched.sendBlock(3, {3, 4, 5});
    EXPECT_EQ(watched.figures().framesIncomplete, 0U);
    watched.sendBlock(4, {3, 4, 5});
    watched.sendBlock(5);
    EXPECT_EQ(watched.figures().framesIncomplete, 2U) << "the stream went on";
    // A slow camera, of which each frame lacks its end.
    for (std::uint64_t block = 6; block <= 9; ++block) {
        watched.sendBlock(block, {4, 5});
        watched.pass(500ms);
    }
    EXPECT_EQ(watched.figures().framesIncomplete, 5U) << "all but the last, which may be cut";
    watched.pass(500ms);
    watched.sendBlock(1);
    EXPECT_EQ(watched.figures().framesIncomplete, 5U) << "begins anew";
}

TEST(ObservedStream, measuresTheTimeOfFrames) {
    Watched watched;
    watched.sendBlock(1);
    watched.sendBlock(2, {3});
    watched.pass(20ms);
    watched.sendBlock(3);
    watched.sendBlock(4);
    const FrameTiming timing = watched.stream.takeTiming();
    EXPECT_EQ(timing.frames, 3U);
    EXPECT_EQ(timing.longest, 500us);
    EXPECT_EQ(timing.total, 500us + 400us + 500us);
    EXPECT_EQ(timing.largestGap, 100us) << "not between frames";
    EXPECT_EQ(watched.stream.takeTiming().frames, 0U);
}

TEST(ObservedStream, seesThatAPathDoesNotCarryFullPackets) {
    Watched watched;
    // The leader tells 40 x 30 pixels of 8 bits, the trailer two packets.
    for (std::uint64_t block = 1; block <= 4; ++block) {
        watched.send(watched.camera.leader(block, 1000 * block));
        watched.send(watched.camera.packet(script::Trailer, block, 3, script::Bytes(8)));
    }
    EXPECT_EQ(watched.figures().framesIncomplete, 3U);
    EXPECT_EQ(watched.figures().framesComplete, 0U);
}

/// Made-up packets must not break it, and true ones after them still count.
TEST(ObservedStream, survivesAMillionPacketsOfAnyKind) {
    std::mt19937 random(5);
    const auto below = [&random](std::uint32_t limit) {
        return static_cast<std::uint32_t>(random() % limit);
    };
    Watched watched({true});
    for (int i = 0; i < 1'000'000; ++i) {
        script::Bytes bytes =
            watched.camera.any(1 + below(200) + below(50) * 0x1'0000'0000, below(7));
        for (std::uint32_t changes = below(3); changes > 0; --changes)
            bytes[below(static_cast<std::uint32_t>(std::min<std::size_t>(bytes.size(), 60)))] =
                static_cast<std::uint8_t>(below(256));
        bytes.resize(below(8) == 0 ? below(60) : bytes.size());
        watched.send(bytes);
        if (below(1000) == 0)
            watched.pass(std::chrono::milliseconds(below(400)));
    }
    watched.pass(3s);
    const std::uint64_t before = watched.figures().framesComplete;
    for (std::uint64_t block = 900'000; block < 900'100; ++block)
        watched.sendBlock(block);
    EXPECT_GE(watched.figures().framesComplete - before, 97U);
}

} // namespace
