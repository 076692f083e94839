// SPDX-License-Identifier: BSD-3-Clause
#include "gvsp/FrameAssembly.h"
#include "tests/gvsp/ReceivedFrame.h"
#include "tests/gvsp/StreamScript.h"

#include <gmock/gmock.h>

#include <deque>
#include <random>
#include <set>
#include <string>

namespace {

using namespace gvsp;
using script::trailerNumber;
using namespace testing;
using Texts = std::vector<std::string>;

/// An assembly with its frames; what it delivers and requests is kept as text.
class Assembled : public FrameAssembly::Output {
public:
    static constexpr std::uint64_t ticksPerSecond = 125'000'000;

    explicit Assembled(script::Camera from = {}, std::optional<std::uint64_t> previous = {},
                       int frames = 8, bool canRequest = true)
        : camera(from), assembly({from.payload(), script::packetSize, ticksPerSecond, canRequest,
                                  previous, false},
                                 *this, counters) {
        for (int i = 0; i < frames; ++i)
            m_free.push_back(std::make_shared<ReceivedFrame>(from.payload()));
    }

    void send(const script::Bytes& bytes) {
        assembly.packet(bytes.data(), bytes.size(), bytes.size(), now);
    }
    void sendPackets(std::uint64_t block, const std::vector<std::uint32_t>& numbers) {
        for (const std::uint32_t number : numbers)
            send(camera.any(block, number));
    }
    /// A block without the packets \p lost.
    void sendBlock(std::uint64_t block, const std::set<std::uint32_t>& lost = {},
                   std::optional<std::uint64_t> timestamp = {}) {
        for (std::uint32_t number = 0; number <= trailerNumber; ++number) {
            if (lost.count(number) == 0)
                send(camera.any(block, number, timestamp));
        }
    }
    void pass(int milliseconds) {
        for (int i = 0; i < milliseconds; ++i) {
            now += std::chrono::milliseconds(1);
            assembly.advance(now);
            EXPECT_TRUE(!assembly.due() || *assembly.due() > now) << "else it is called in vain";
        }
    }
    Texts takeDelivered() { return std::exchange(m_delivered, {}); }
    Texts takeRequests() { return std::exchange(m_requests, {}); }

    std::shared_ptr<FrameBuffer> takeFrame() override {
        if (m_free.empty())
            return nullptr;
        auto frame = m_free.front();
        m_free.pop_front();
        return frame;
    }
    void deliver(std::shared_ptr<FrameBuffer> delivered) override {
        auto frame = std::static_pointer_cast<ReceivedFrame>(std::move(delivered));
        const auto status = frame->contents.status;
        const bool isWhole = status == OrvFrameStatusComplete;
        m_delivered.push_back(std::to_string(frame->contents.id.value()) +
                              (isWhole                            ? ""
                               : status == OrvFrameStatusTooSmall ? " small"
                                                                  : " cut"));
        if (isWhole) {
            const std::vector<std::uint8_t>& image = frame->memory;
            EXPECT_EQ(image[0], 1);
            EXPECT_EQ(image[camera.dataSize()], 2);
            EXPECT_EQ(image[camera.payload() - 1], 4);
        }
        last = frame;
        m_free.push_back(std::move(frame));
    }
    void request(const ResendRequest& request) override {
        m_requests.push_back(std::to_string(request.block) + ':' +
                             std::to_string(request.packets.first) + '-' +
                             std::to_string(request.packets.last));
    }

    using Time = FrameAssembly::Time;
    const script::Camera camera;
    StreamCounters counters;
    FrameAssembly assembly;
    Time now{std::chrono::hours(1)};
    std::shared_ptr<ReceivedFrame> last;

private:
    std::deque<std::shared_ptr<ReceivedFrame>> m_free;
    Texts m_delivered;
    Texts m_requests;
};

TEST(FrameAssembly, deliversBlocksWhateverTheOrderOfTheirPackets) {
    for (const bool hasExtendedIds : {false, true}) {
        Assembled stream({hasExtendedIds});
        stream.sendBlock(1);
        stream.sendPackets(2, {3, 5, 0, 0, 4, 1, 3, 2, 2});
        // Two blocks at once, the later one whole first.
        stream.sendPackets(3, {0, 1, 2});
        stream.sendBlock(4);
        EXPECT_THAT(stream.takeDelivered(), ElementsAre("1", "2"));
        stream.sendPackets(3, {3, 4, 5});
        EXPECT_THAT(stream.takeDelivered(), ElementsAre("3", "4"));
        EXPECT_EQ(stream.last->contents.timestamp, 4000U * 8) << "nanoseconds";
        EXPECT_EQ(stream.last->contents.image.value().width, 40U);
        EXPECT_EQ(stream.last->contents.image.value().height, 30U);
        stream.pass(300);
        EXPECT_THAT(stream.takeRequests(), IsEmpty());
        EXPECT_EQ(stream.counters.packetsDuplicate, 2U);
        EXPECT_EQ(stream.counters.packetsLate, 1U) << "after its block was delivered";
        EXPECT_EQ(stream.counters.framesComplete, 4U);
        EXPECT_EQ(stream.assembly.due(), std::nullopt);
    }
}

TEST(FrameAssembly, requestsWhatIsMissing) {
    Assembled stream;
    stream.sendBlock(1, {0, 2, 3});
    stream.pass(1);
    EXPECT_THAT(stream.takeRequests(), IsEmpty()) << "packets may come in another order";
    stream.pass(2);
    EXPECT_THAT(stream.takeRequests(), ElementsAre("1:0-0", "1:2-3"));
    stream.sendPackets(1, {2, 0});
    stream.pass(12);
    EXPECT_THAT(stream.takeRequests(), ElementsAre("1:3-3")) << "again";
    stream.sendPackets(1, {3});
    EXPECT_THAT(stream.takeDelivered(), ElementsAre("1"));
    EXPECT_EQ(stream.counters.packetsRequested, 4U);
    EXPECT_EQ(stream.counters.packetsResent, 3U);

    // The end of a block is missed when the next one begins, or when the camera pauses for long.
    stream.sendBlock(2, {4, 5});
    stream.pass(20);
    EXPECT_THAT(stream.takeRequests(), IsEmpty());
    stream.sendBlock(3);
    stream.pass(3);
    EXPECT_THAT(stream.takeRequests(), ElementsAre("2:4-5"));
    stream.sendBlock(4, {5});
    stream.pass(50);
    EXPECT_THAT(stream.takeRequests(), testing::Contains("4:5-5"));
    stream.pass(200);
    EXPECT_THAT(stream.takeDelivered(), ElementsAre("2 cut", "3", "4 cut"));
    EXPECT_EQ(stream.counters.packetsMissing, 3U);
}

TEST(FrameAssembly, endsBlocksThatCannotBecomeWhole) {
    // The camera does not have packets 1 and 2 any more.
    Assembled both;
    both.sendBlock(1, {1, 2});
    both.send(both.camera.packet(script::Data, 1, 2, {}, 0x8011));
    EXPECT_THAT(both.takeDelivered(), ElementsAre("1 cut"));
    // It does not have packet 2; or it has not sent it yet, or has no time.
    const std::pair<std::uint16_t, bool> statuses[] = {
        {0x800C, true}, {0x8011, true}, {0x8012, true}, {0x8010, false}, {0x8014, false}};
    for (const auto& [status, isGone] : statuses) {
        SCOPED_TRACE(status);
        Assembled stream;
        stream.sendBlock(1, {2});
        stream.send(stream.camera.packet(script::Data, 1, 2, {}, status));
        EXPECT_EQ(stream.takeDelivered(), isGone ? Texts{"1 cut"} : Texts{});
        EXPECT_EQ(stream.counters.packetsUnavailable, isGone ? 1U : 0U);
        stream.pass(2);
        EXPECT_EQ(stream.takeRequests(), isGone ? Texts{} : Texts{"1:2-2"});
        EXPECT_THAT(stream.takeDelivered(), IsEmpty());
    }
    // It cannot send again.
    Assembled stream({}, {}, 8, false);
    stream.sendBlock(1, {2});
    stream.pass(3);
    EXPECT_THAT(stream.takeDelivered(), ElementsAre("1 cut"));
    EXPECT_THAT(stream.takeRequests(), IsEmpty());
}

TEST(FrameAssembly, requestsLittleWhereTheLinkIsTooSlow) {
    Assembled stream;
    for (std::uint64_t block = 1; block <= 3; ++block)
        stream.sendBlock(block, {1, 2});
    stream.pass(500);
    EXPECT_LT(stream.counters.packetsRequested, 3U * 20);
    EXPECT_GT(stream.counters.packetsRequested, 3U * 2);
    EXPECT_THAT(stream.takeDelivered(), ElementsAre("1 cut", "2 cut", "3 cut"));
}

TEST(FrameAssembly, numbersCountOnWhateverTheCamerasDo) {
    constexpr std::uint64_t beyond16Bits = 0x1FFFF;
    const struct {
        const char* what;
        bool hasExtendedIds;
        std::optional<std::uint64_t> previous;
        /// The camera's IDs; 0 for a second of silence.
        std::vector<std::uint64_t> ids;
        Texts numbers;
        std::uint64_t lost;
    } cases[] = {
        {"the first ones lost", false, {}, {3, 4}, {"3", "4"}, 2},
        {"goes on from before", false, 65000, {65001, 65003}, {"1", "3"}, 1},
        {"goes on from a small ID", false, 9, {10, 11}, {"1", "2"}, 0},
        {"begins anew", false, 9, {1, 2}, {"1", "2"}, 0},
        {"wraps without 0", false, 65000, {65534, 65535, 1, 2}, {"1", "2", "3", "4"}, 0},
        {"lost over the wrap", false, 65000, {65534, 3}, {"1", "5"}, 3},
        {"64 bits do not wrap", true, 65000, {65535, 65536}, {"1", "2"}, 0},
        {"a long gap in time for it", true, {}, {1, 0, 0, beyond16Bits}, {"1", "131071"}, 131069},
        {"begins anew while it streams", false, {}, {7, 8, 1, 2}, {"7", "8", "9", "10"}, 6},
        {"steps back", true, {}, {7, 8, 5, 6}, {"7", "8", "9", "10"}, 6},
        {"jumps further than it can send", true, {}, {1, 2, 1 << 20}, {"1", "2", "3"}, 0},
        {"jumps to the end", true, {}, {1, ~0ULL}, {"1", "2"}, 0},
    };
    for (const auto& [what, hasExtendedIds, previous, ids, numbers, lost] : cases) {
        SCOPED_TRACE(what);
        Assembled stream({hasExtendedIds}, previous);
        std::uint64_t timestamp = 0;
        for (const std::uint64_t id : ids) {
            if (id == 0)
                stream.pass(1000);
            else
                stream.sendBlock(id, {}, ++timestamp);
        }
        EXPECT_EQ(stream.takeDelivered(), numbers);
        EXPECT_EQ(stream.counters.framesLost, lost);
        EXPECT_EQ(stream.counters.gaps, lost > 0 ? 1U : 0U);
    }
}

TEST(FrameAssembly, countsFramesWhosePathCarriesOnlySmallPackets) {
    Assembled stream({}, {}, 8, false);
    std::uint64_t block = 0;
    // With the short last packet of data, and without; then each kind of other frames.
    for (const std::set<std::uint32_t>& lost : std::vector<std::set<std::uint32_t>>{
             {1, 2, 3}, {1, 2, 3, 4}, {1, 2}, {0, 1, 2, 3}, {1, 2, 3, 5}, {}})
        stream.sendBlock(++block, lost);
    stream.pass(300);
    EXPECT_EQ(stream.counters.framesHollow, 2U);
}

TEST(FrameAssembly, deliversABlockThatComesTwiceOnce) {
    // With a clock, and without.
    for (const std::uint64_t tick : {1U, 0U}) {
        Assembled stream;
        for (const std::uint64_t id : {1U, 2U, 2U, 3U, 1U, 4U})
            stream.sendBlock(id, {}, tick * id);
        EXPECT_THAT(stream.takeDelivered(), ElementsAre("1", "2", "3", "4"));
        EXPECT_EQ(stream.counters.packetsLate, 12U);
        EXPECT_EQ(stream.counters.framesLost, 0U);
    }
}

TEST(FrameAssembly, deliversABlockOnceWhoseLeaderComesAfterItsEnd) {
    Assembled stream;
    stream.sendBlock(1);
    stream.sendBlock(2, {0, 3});
    stream.pass(200);
    stream.sendPackets(2, {0, 3});
    stream.pass(200);
    stream.sendBlock(3);
    EXPECT_THAT(stream.takeDelivered(), ElementsAre("1", "2 cut", "3"));
    // A camera that begins anew then is still understood.
    stream.sendBlock(1, {}, 4000);
    EXPECT_THAT(stream.takeDelivered(), ElementsAre("4"));
}

TEST(FrameAssembly, forgetsPacketsOfLostBlocksBeforeTheirIdsComeAgain) {
    Assembled stream;
    stream.sendBlock(1);
    stream.send(
        stream.camera.packet(script::Data, 2, 1, script::Bytes(stream.camera.dataSize(), 99)));
    stream.pass(300);
    stream.takeDelivered();
    for (std::uint64_t id = 1001; id < 0xFFFF; id += 1000)
        stream.sendBlock(id);
    stream.sendBlock(2);
    EXPECT_EQ(stream.takeDelivered().size(), 66U) << "with their own images";
}

TEST(FrameAssembly, waitsForNothingWhileABlockWaitsBehindAnother) {
    Assembled stream;
    stream.sendBlock(1, {2});
    stream.sendBlock(2, {0, 1, 2, 3});
    stream.send(stream.camera.packet(script::Data, 2, 1, {}, 0x800C));
    stream.sendBlock(3, {5});
    stream.pass(300);
    EXPECT_THAT(stream.takeDelivered(), ElementsAre("1 cut", "2 cut", "3 cut"));
}

TEST(FrameAssembly, refusesPacketsThatFitNoBlock) {
    Assembled stream;
    const auto& camera = stream.camera;
    stream.sendBlock(1);
    stream.sendPackets(2, {0, 1, 2, 3});
    const script::Bytes full(camera.dataSize(), 9);
    const script::Bytes refused[] = {
        {},
        script::Bytes(7, 0),
        camera.packet(script::Leader, 2, 4, full),
        camera.packet(script::Leader, 2, 4),
        camera.packet(script::Data, 2, 0x00FFFFFF, full),
        camera.packet(script::Data, 2, 4, script::Bytes(camera.dataSize() + 1, 9)),
        camera.packet(script::AllIn, 2, 4, full),
        camera.packet(script::MultiPart, 2, 4, script::Bytes(4, 0)),
        camera.packet(script::MultiPart, 2, 4, script::Bytes(20, 0xFF)),
        camera.packet(script::Trailer, 2, 2),
        camera.packet(script::Data, 0, 1, full),
        script::Camera{true}.data(2, 4),
    };
    for (const script::Bytes& bytes : refused)
        stream.send(bytes);
    EXPECT_EQ(stream.counters.packetsRefused + stream.counters.packetsDuplicate,
              std::size(refused));
    // A damaged ID does not begin a block.
    stream.send(camera.data(40, 2));
    stream.sendPackets(2, {4, 5});
    stream.sendBlock(3);
    stream.pass(300);
    EXPECT_THAT(stream.takeDelivered(), ElementsAre("1", "2", "3"));
    EXPECT_EQ(stream.counters.framesLost, 0U);
}

TEST(FrameAssembly, marksFramesOfAnotherSize) {
    Assembled stream;
    const auto& camera = stream.camera;
    // Data that end early, a full last packet, a trailer beyond the frame, a short inner packet.
    const auto sendWith = [&](std::uint64_t block, std::uint32_t number, const script::Bytes& data,
                              std::uint32_t trailer) {
        for (std::uint32_t each = 0; each < std::min(trailer, trailerNumber); ++each)
            stream.send(each == number ? camera.packet(script::Data, block, number, data)
                                       : camera.any(block, each));
        stream.send(camera.packet(script::Trailer, block, trailer, script::Bytes(8, 0)));
    };
    sendWith(1, 0xFF, {}, 3);
    sendWith(2, 4, script::Bytes(camera.dataSize(), 4), 5);
    sendWith(3, 0xFF, {}, 5000);
    sendWith(4, 2, script::Bytes(50, 2), 5);
    sendWith(5, 0xFF, {}, 5);
    EXPECT_THAT(stream.takeDelivered(), ElementsAre("1 small", "2 small", "3 small", "4 cut", "5"));
}

TEST(FrameAssembly, putsPartsWhereTheyBelong) {
    Assembled stream;
    const auto& camera = stream.camera;
    const std::size_t part = camera.dataSize() - 8;
    script::Bytes leader;
    // Type, size, format, 12 bytes for other values, width and height of a part.
    const std::pair<std::uint64_t, int> fields[] = {
        {0x0000000A, 4}, {7, 8},  {1, 2}, {camera.payload(), 6}, {0x01080001, 4}, {0, 8},
        {0, 4},          {40, 4}, {30, 4}};
    for (const auto& [value, size] : fields)
        script::append(leader, value, size);
    leader.resize(leader.size() + 16);
    stream.send(camera.packet(script::Leader, 1, 0, leader));
    std::uint32_t number = 1;
    for (std::size_t offset = 0; offset < camera.payload(); offset += part) {
        script::Bytes data;
        script::append(data, 0, 2);
        script::append(data, offset, 6);
        for (std::size_t i = offset; i < std::min(offset + part, camera.payload()); ++i)
            data.push_back(static_cast<std::uint8_t>(1 + i / camera.dataSize()));
        stream.send(camera.packet(script::MultiPart, 1, number++, data));
    }
    stream.send(camera.packet(script::Trailer, 1, number, script::Bytes(8, 0)));
    EXPECT_THAT(stream.takeDelivered(), ElementsAre("1"));
    EXPECT_EQ(stream.last->contents.image.value().width, 40U);
}

TEST(FrameAssembly, countsFramesWithoutABuffer) {
    Assembled none({}, {}, 0);
    for (const std::uint64_t block : {1U, 2U})
        none.sendBlock(block);
    EXPECT_EQ(none.counters.framesWithoutBuffer, 2U);
    EXPECT_EQ(none.counters.framesLost, 0U);
    // A block that waits for packets gives way to the next one.
    Assembled one({}, {}, 1);
    one.sendBlock(1, {2});
    one.sendBlock(2);
    EXPECT_THAT(one.takeDelivered(), ElementsAre("1 cut", "2"));
}

/// Packets of 400 blocks that are lost, doubled, mixed, cut, and damaged in their headers.
TEST(FrameAssembly, deliversEachBlockOnceUnderRandomFaults) {
    for (std::uint32_t seed = 0; seed < 20; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto oneIn = [&random](std::uint32_t times) {
            return random() % times == 0;
        };
        Assembled stream({seed % 2 == 0}, 65000);
        std::deque<script::Bytes> wire;
        for (std::uint64_t i = 0; i < 400; ++i) {
            const std::uint64_t block = 65300 + i;
            const std::uint64_t id = seed % 2 == 0 || block < 65536 ? block : block - 65535;
            for (std::uint32_t number = 0; number <= trailerNumber; ++number) {
                auto bytes = stream.camera.any(id, number, block);
                if (oneIn(50))
                    wire.push_back(bytes);
                if (oneIn(60))
                    bytes[random() % 8] ^= static_cast<std::uint8_t>(1U << random() % 8);
                if (oneIn(60))
                    bytes.resize(random() % bytes.size());
                if (!oneIn(40))
                    wire.insert(wire.end() - std::min<std::ptrdiff_t>(
                                                 random() % 3, static_cast<int>(wire.size())),
                                bytes);
            }
            while (wire.size() > 4) {
                stream.send(wire.front());
                wire.pop_front();
            }
            stream.pass(1);
        }
        stream.pass(500);
        std::vector<std::uint64_t> numbers{0};
        for (const std::string& text : stream.takeDelivered()) {
            numbers.push_back(std::stoull(text));
            EXPECT_GT(numbers.back(), *(numbers.end() - 2));
        }
        EXPECT_GT(numbers.size(), 381U);
        EXPECT_LE(numbers.back(), 400U);
        EXPECT_EQ(numbers.size() - 1 + stream.counters.framesLost, numbers.back());
    }
}

} // namespace
