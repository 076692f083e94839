// SPDX-License-Identifier: BSD-3-Clause
#include "observer/AdapterObserver.h"
#include "gige/BootstrapRegisters.h"
#include "gige/GvcpCommand.h"
#include "tests/gvsp/StreamScript.h"

#include <gmock/gmock.h>

#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace observer;
using namespace std::chrono_literals;
using script::Bytes;
using testing::ElementsAre;

constexpr std::uint32_t hostAddress = 0x0A000001;
constexpr std::uint32_t cameraAddress = 0x0A00000B;

/// Packets by hand. As the kernel does, it hands over data of the endpoints only.
class ScriptedSource : public gvsp::PacketSource {
public:
    struct Sent {
        std::uint32_t camera;
        std::uint16_t senderPort;
        std::uint16_t port;
        Bytes bytes;
        std::chrono::nanoseconds time;
        gige::Fragment fragment = gige::Fragment::Whole;
    };

    void receive(std::chrono::microseconds, const Handler& handler) override {
        for (const Sent& packet : std::exchange(sent, {})) {
            gvsp::StreamDatagram datagram;
            datagram.sender = packet.camera;
            datagram.destination = hostAddress;
            datagram.senderPort = packet.senderPort;
            datagram.port = packet.port;
            datagram.data = packet.bytes.data();
            datagram.size = datagram.captured = packet.bytes.size();
            datagram.arrival = packet.time;
            datagram.fragment = packet.fragment;
            handler(datagram);
        }
    }
    void wake() override {}
    void listen(const std::vector<gvsp::StreamEndpoint>& endpoints) override {
        ports.clear();
        for (const auto& endpoint : endpoints)
            ports.push_back(endpoint.port);
    }
    std::chrono::milliseconds latency() const override { return delay; }
    gvsp::SourceCounts counts() override { return missed; }

    std::vector<Sent> sent;
    std::vector<std::uint16_t> ports;
    gvsp::SourceCounts missed;
    std::chrono::milliseconds delay{0};
};

class AdapterObservers : public testing::Test {
protected:
    /// Frames to a port, 1 ms apart, the last one \p ago.
    void sendFrames(std::uint16_t port, std::uint64_t first, int count,
                    std::uint32_t camera = cameraAddress, std::chrono::seconds ago = 0s) {
        const auto now = std::chrono::system_clock::now().time_since_epoch() - ago - count * 1ms;
        for (int i = 0; i < count; ++i) {
            for (std::uint32_t number = 0; number <= script::trailerNumber; ++number)
                source.sent.push_back(
                    {camera, 50000, port,
                     script::Camera().any(first + static_cast<unsigned>(i), number),
                     now + i * 1ms + number * 10us});
        }
    }
    void answer(Bytes bytes) {
        source.sent.push_back({cameraAddress, gige::controlPort, 40000, std::move(bytes), {}});
    }
    AdapterReading observe() {
        observer.receive(0ms);
        return observer.read();
    }

    std::unique_ptr<ScriptedSource> made = std::make_unique<ScriptedSource>();
    ScriptedSource& source = *made;
    AdapterObserver observer{std::move(made)};
};

TEST_F(AdapterObservers, findStreamsByTheirLeadersAndTellThemApart) {
    EXPECT_TRUE(observe().streams.empty());
    // Two cameras, one of them with two streams; all to the same host.
    sendFrames(4001, 1, 5);
    sendFrames(4002, 900, 4);
    sendFrames(4001, 1, 3, cameraAddress + 1);
    // No leader: a text, and data of a stream that is not known.
    source.sent.push_back({cameraAddress, 53, 4003, Bytes(60, 'a'), {}});
    source.sent.push_back({cameraAddress, 50000, 4004, script::Camera().data(7, 2), {}});
    const AdapterReading reading = observe();
    EXPECT_THAT(source.ports, ElementsAre(4001, 4002, 4001));
    std::vector<std::pair<std::uint16_t, std::uint64_t>> frames;
    for (const StreamReading& stream : reading.streams)
        frames.emplace_back(stream.port, stream.figures.framesComplete);
    // The first frame of each tells its size.
    EXPECT_THAT(frames, ElementsAre(std::pair(4001, 4U), std::pair(4002, 3U), std::pair(4001, 2U)));
}

TEST_F(AdapterObservers, tellUntilWhenAllPacketsAreSeen) {
    const auto age = [this] {
        const std::chrono::duration<double> time =
            std::chrono::steady_clock::now() - observe().until;
        return time.count();
    };
    source.delay = 100s;
    EXPECT_NEAR(age(), 100, 5) << "packets may wait for so long";
    sendFrames(4001, 1, 3, cameraAddress, 50s);
    EXPECT_NEAR(age(), 50, 5) << "none waits before one that was seen";
    source.delay = 10s;
    EXPECT_NEAR(age(), 10, 5);
}

TEST_F(AdapterObservers, learnNamesFromAnswersToOthers) {
    sendFrames(4001, 1, 3);
    EXPECT_EQ(observe().streams.at(0).name.model, "");
    const auto textAnswer = [](std::uint32_t address, std::string text, std::size_t size) {
        Bytes body;
        script::append(body, address, 4);
        body.insert(body.end(), text.begin(), text.end());
        body.resize(4 + size);
        Bytes bytes{0, 0, 0, 0x85, 0, static_cast<std::uint8_t>(body.size()), 0, 9};
        bytes.insert(bytes.end(), body.begin(), body.end());
        return bytes;
    };
    answer(textAnswer(0x68, "Fast 5", 32));
    answer(textAnswer(0xD8, "S123", 8)); // shorter than the register
    answer(textAnswer(0xE8, "left", 16));
    answer({0, 0, 0, 0x85});
    StreamReading stream = observe().streams.at(0);
    EXPECT_EQ(stream.name.model, "Fast 5");
    EXPECT_EQ(stream.name.serialNumber, "");
    EXPECT_EQ(stream.name.userName, "left");
    EXPECT_EQ(stream.name.macAddress, 0U);

    Bytes discovery{0, 0, 0, 3, 0, 248, 0, 77};
    discovery.resize(gige::gvcpHeaderSize + 248);
    for (std::uint8_t i = 0; i < 6; ++i)
        discovery[gige::gvcpHeaderSize + 10 + i] = static_cast<std::uint8_t>(0x10 + i);
    answer(discovery);
    stream = observe().streams.at(0);
    EXPECT_EQ(stream.name.macAddress, 0x101112131415U);
}

TEST_F(AdapterObservers, doNotBlameCamerasForWhatTheyMissed) {
    sendFrames(4001, 1, 3);
    observe();
    source.missed.dropped = 100;
    sendFrames(4001, 10, 3);
    // A stream that begins then.
    sendFrames(4002, 1, 3);
    sendFrames(4002, 10, 3);
    AdapterReading reading = observe();
    EXPECT_EQ(reading.streams.at(1).figures.framesLost, 0U);
    EXPECT_EQ(reading.missed.dropped, 100U);
    EXPECT_EQ(reading.streams.at(0).figures.framesLost, 0U);
    EXPECT_EQ(reading.streams.at(0).figures.framesUnjudged, 6U);
}

TEST_F(AdapterObservers, doNotBlameCamerasForTheTimeUntilARingWasOpenedAnew) {
    sendFrames(4001, 1, 3);
    observe();
    source.missed.returns = 1;
    sendFrames(4001, 10, 3);
    EXPECT_EQ(observe().streams.at(0).figures.framesLost, 0U);
}

TEST_F(AdapterObservers, countPacketsOverATimeInWhichAllAreSeen) {
    sendFrames(4001, 1, 3);
    observe();
    observer.startCount();
    EXPECT_EQ(observer.counted(), 0U);
    std::this_thread::sleep_for(20ms);
    sendFrames(4001, 4, 3);
    observer.endCount();
    observe();
    EXPECT_EQ(observer.counted(), 18U);
    std::this_thread::sleep_for(20ms);
    sendFrames(4001, 7, 3);
    observe();
    EXPECT_EQ(observer.counted(), 18U) << "too late";
    sendFrames(4002, 1, 3);
    observe();
    EXPECT_EQ(observer.counted(), std::nullopt);
}

TEST_F(AdapterObservers, countFragmentsWithoutTakingThemForPackets) {
    sendFrames(4001, 1, 3);
    observe();
    observer.startCount();
    std::this_thread::sleep_for(20ms);
    sendFrames(4001, 4, 1);
    // Each packet has two fragments; the contents of the second look like a leader of a camera.
    const std::vector<ScriptedSource::Sent> firsts = std::exchange(source.sent, {});
    for (ScriptedSource::Sent sent : firsts) {
        sent.fragment = gige::Fragment::First;
        source.sent.push_back(sent);
        sent.fragment = gige::Fragment::Later;
        sent.port = sent.senderPort = 0;
        sent.bytes = script::Camera().leader(9, 1);
        source.sent.push_back(sent);
    }
    const AdapterReading reading = observe();
    ASSERT_EQ(reading.streams.size(), 1U);
    EXPECT_EQ(reading.streams[0].figures.framesComplete, 3U);
    EXPECT_EQ(reading.fragments.packets, 6U);
    EXPECT_EQ(reading.fragments.bytes, 6U * script::Camera().leader(9, 1).size());
    EXPECT_EQ(observer.counted(), 12U) << "what the adapter counts";
}

TEST_F(AdapterObservers, followACameraToItsNextPort) {
    sendFrames(4001, 1, 5, cameraAddress, 5s);
    const FrameTiming before = observe().streams.at(0).timing;
    sendFrames(4001, 6, 3, cameraAddress, 4s);
    sendFrames(4009, 1, 4);
    const AdapterReading reading = observe();
    ASSERT_EQ(reading.streams.size(), 1U);
    EXPECT_EQ(reading.streams[0].port, 4009);
    EXPECT_EQ(reading.streams[0].figures.framesComplete, 4U + 3 + 3);
    EXPECT_EQ(reading.streams[0].known.packets, 5U * 6) << "of the port before, when it was read";
    EXPECT_EQ(observe().streams[0].known.packets, (5U + 3 + 4) * 6);
    EXPECT_GT(before.frames, 2U);
    EXPECT_EQ(reading.streams[0].allTiming.frames,
              before.frames + reading.streams[0].timing.frames);
}

} // namespace
