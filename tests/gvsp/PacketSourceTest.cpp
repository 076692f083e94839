// SPDX-License-Identifier: BSD-3-Clause
#include "gige/BigEndian.h"
#include "gige/BootstrapRegisters.h"
#include "gige/IpDatagram.h"
#include "gvsp/AdapterRing.h"
#include "gvsp/PacketRing.h"
#include "gvsp/StreamFilter.h"
#include "gvsp/UdpPackets.h"
#include "platform/Descriptor.h"
#include "platform/Ipv4Address.h"
#include "platform/UdpSocket.h"
#include "tests/gvsp/StreamScript.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <net/ethernet.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using namespace gvsp;
using namespace std::chrono_literals;
using script::Bytes;
using script::ipPacket;

/// Unique to this process; the last digits are for the addresses of one test.
const std::uint32_t baseAddress =
    0x7F800000U + (static_cast<std::uint32_t>(::getpid() & 0xFFFF) << 4U);
const std::uint32_t cameraAddress = baseAddress + 1;
const std::uint32_t strangerAddress = baseAddress + 2;
const std::uint32_t hostAddress = baseAddress + 3;

/// Bytes of a datagram, and its size.
using Received = std::pair<Bytes, std::size_t>;

Bytes payload(std::size_t size, std::uint8_t format) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 7);
    if (size > 4)
        bytes[4] = format;
    return bytes;
}

/// Packets that must not come: good ones with another byte, and short ones.
std::vector<Bytes> malformedPackets(const StreamEndpoint& to) {
    const Bytes good = ipPacket(to, payload(12, 1));
    std::vector<Bytes> packets;
    // Version and header length, fragments, protocol, length of the packet, length of UDP.
    constexpr std::pair<std::size_t, std::uint8_t> changes[] = {
        {0, 0x65}, {0, 0x44}, {0, 0x4F}, {6, 0x20}, {7, 1},  {9, IPPROTO_TCP},
        {3, 27},   {3, 39},   {3, 41},   {25, 7},   {25, 21}};
    for (const auto& [at, value] : changes) {
        packets.push_back(good);
        packets.back()[at] = value;
    }
    for (const std::ptrdiff_t size : {1, 19, 27})
        packets.emplace_back(good.begin(), good.begin() + size);
    return packets;
}

TEST(IpDatagram, hasTheBoundsOfItsPacketOrIsRefused) {
    for (const auto& [size, captured] : {std::pair(60U, 60U), {50U, 50U}, {42U, 42U}, {50U, 40U}}) {
        Bytes packet = ipPacket({0x81828384, 2, 0xABCD, false}, payload(10, 1), 4);
        packet.resize(captured);
        packet.shrink_to_fit();
        for (const auto read : {gige::readIpDatagram, gige::readIpFragment}) {
            gige::UdpDatagram datagram;
            ASSERT_TRUE(read(packet.data(), captured, size, datagram));
            EXPECT_EQ(datagram.sender, 0x81828384U);
            EXPECT_EQ(datagram.port, 0xABCD);
            EXPECT_EQ(datagram.size, 10U);
            EXPECT_EQ(datagram.captured, std::min(captured - 32, 10U));
            EXPECT_EQ(datagram.data, packet.data() + 32);
            EXPECT_EQ(datagram.fragment, gige::Fragment::Whole);
            EXPECT_FALSE(read(packet.data(), 31, size, datagram));
        }
    }
    for (const Bytes& packet : malformedPackets({1, 2, 3, false})) {
        gige::UdpDatagram datagram;
        EXPECT_FALSE(gige::readIpDatagram(packet.data(), packet.size(), packet.size(), datagram))
            << testing::PrintToString(packet);
        EXPECT_TRUE(!gige::readIpFragment(packet.data(), packet.size(), packet.size(), datagram) ||
                    datagram.fragment == gige::Fragment::Later)
            << testing::PrintToString(packet);
    }
}

/// The parts of an IPv4 packet with a header of 20 bytes, of \p size bytes of its contents each.
std::vector<Bytes> fragmentsOf(const Bytes& packet, std::size_t size) {
    std::vector<Bytes> fragments;
    for (std::size_t at = 20; at < packet.size(); at += size) {
        const std::size_t end = std::min(at + size, packet.size());
        Bytes fragment(packet.begin(), packet.begin() + 20);
        fragment.insert(fragment.end(), packet.begin() + static_cast<std::ptrdiff_t>(at),
                        packet.begin() + static_cast<std::ptrdiff_t>(end));
        const std::size_t bits = (at - 20) / 8 + (end < packet.size() ? 0x2000U : 0U);
        fragment[2] = static_cast<std::uint8_t>(fragment.size() >> 8U);
        fragment[3] = static_cast<std::uint8_t>(fragment.size());
        fragment[6] = static_cast<std::uint8_t>(bits >> 8U);
        fragment[7] = static_cast<std::uint8_t>(bits);
        fragments.push_back(std::move(fragment));
    }
    return fragments;
}

TEST(IpDatagram, tellsFragmentsOfWhichTheFirstHasTheSizeOfAll) {
    const std::vector<Bytes> fragments =
        fragmentsOf(ipPacket({1, 2, 3, false}, payload(5000, 3)), 1480);
    gige::UdpDatagram datagram;
    std::vector<std::pair<gige::Fragment, std::size_t>> read;
    for (const Bytes& each : fragments) {
        EXPECT_FALSE(gige::readIpDatagram(each.data(), each.size(), each.size(), datagram));
        ASSERT_TRUE(gige::readIpFragment(each.data(), 28, each.size(), datagram));
        EXPECT_EQ(datagram.sender, 1U);
        read.emplace_back(datagram.fragment, datagram.size);
    }
    EXPECT_EQ(read, (std::vector<std::pair<gige::Fragment, std::size_t>>{
                        {gige::Fragment::First, 5000},
                        {gige::Fragment::Later, 1480},
                        {gige::Fragment::Later, 1480},
                        {gige::Fragment::Later, 5008 - 3 * 1480}}));
    EXPECT_EQ(datagram.port, 0);
}

/// Bytes that a filter leaves of a packet; 0 when it refuses. The kernel runs it on the datagrams
/// of a pair of sockets.
std::size_t filtered(std::vector<sock_filter> program, const Bytes& packet) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_DGRAM, 0, ends), 0);
    const platform::Descriptor from(ends[0]);
    const platform::Descriptor to(ends[1]);
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    EXPECT_EQ(setsockopt(ends[1], SOL_SOCKET, SO_ATTACH_FILTER, &filter, sizeof filter), 0);
    EXPECT_GT(send(ends[0], packet.data(), packet.size(), 0), 0);
    Bytes buffer(packet.size());
    return static_cast<std::size_t>(
        std::max<ssize_t>(recv(ends[1], buffer.data(), buffer.size(), MSG_DONTWAIT), 0));
}

std::vector<StreamEndpoint> endpointsOf(unsigned count) {
    std::vector<StreamEndpoint> endpoints;
    for (unsigned i = 0; i < count; ++i)
        // Several cameras per port, ports beyond both ends of the range, two hosts.
        endpoints.push_back({0xC0A80000U + i, 0x0A000001U + i % 2,
                             static_cast<std::uint16_t>(i % 10 == 0 ? 65535 : i / 3 * 331),
                             i % 3 == 0});
    return endpoints;
}

TEST(StreamFilter, acceptsTheEndpointsOnly) {
    const Bytes data = payload(100, 3);
    for (const unsigned count : {0U, 1U, 5U, 200U}) {
        const auto endpoints = endpointsOf(count);
        const auto filter = streamFilter(endpoints);
        EXPECT_EQ(filtered(filter, ipPacket({1, 2, 3, false}, data)), 0U);
        for (const auto& [camera, host, port, headersOnly] : endpoints) {
            EXPECT_EQ(filtered(filter, ipPacket({camera, host, port, false}, data)),
                      headersOnly ? 56U : 128U);
            const auto below = static_cast<std::uint16_t>(port - 1);
            const auto above = static_cast<std::uint16_t>(port + 1);
            const StreamEndpoint others[] = {
                {camera ^ 0x200U, host, port, false}, {camera ^ 0x80000000U, host, port, false},
                {camera, host ^ 4U, port, false},     {camera, host ^ 0x80000000U, port, false},
                {camera, host, below, false},         {camera, host, above, false}};
            for (const StreamEndpoint& other : others)
                EXPECT_EQ(filtered(filter, ipPacket(other, data)), 0U);
        }
    }
}

TEST(StreamFilter, cutsPayloadAndRefusesOtherProtocols) {
    const StreamEndpoint endpoint{1, 2, 3, true};
    const auto filter = streamFilter({endpoint});
    for (unsigned format = 0; format < 16; ++format) {
        const auto byte = static_cast<std::uint8_t>(0x80 + format);
        const bool isCut = testing::Value(format, testing::AnyOf(3U, 5U, 6U, 7U, 8U));
        EXPECT_EQ(carriesPayload(byte), isCut) << format;
        EXPECT_EQ(filtered(filter, ipPacket(endpoint, payload(100, byte), 8)), isCut ? 64U : 136U)
            << format;
        EXPECT_EQ(filtered(filter, ipPacket(endpoint, payload(20, byte))), 48U)
            << "shorter than the header";
    }
    for (const auto& whole : {streamFilter({endpoint, {1, 2, 3, false}}), unselectiveFilter()}) {
        Bytes packet = ipPacket(endpoint, payload(40, 3));
        packet[6] = 0x40;
        EXPECT_EQ(filtered(whole, packet), packet.size()) << "whole, and not to be fragmented";
        for (const std::size_t changed : {0U, 6U, 7U, 9U}) {
            packet[changed] ^= 0x20;
            EXPECT_EQ(filtered(whole, packet), 0U) << changed;
            packet[changed] ^= 0x20;
        }
    }
}

/// As ipPacket(), from a port.
Bytes packetFrom(std::uint16_t senderPort, const StreamEndpoint& to, const Bytes& data) {
    Bytes packet = ipPacket(to, data);
    packet[20] = static_cast<std::uint8_t>(senderPort >> 8U);
    packet[21] = static_cast<std::uint8_t>(senderPort);
    return packet;
}

TEST(ObserverFilter, acceptsHeadersOfItsStreamsLeadersOfOthersAndAnswers) {
    const StreamEndpoint known{1, 2, 3, false};
    const StreamEndpoint other{1, 2, 4, false};
    for (const unsigned count : {0U, 1U, 60U}) {
        auto endpoints = endpointsOf(count);
        endpoints.push_back(known);
        const auto filter = observerFilter(endpoints);
        EXPECT_EQ(filtered(filter, ipPacket(known, payload(500, 3))), 20U + 8 + keptOfPayload);
        EXPECT_EQ(filtered(filter, ipPacket(other, payload(500, 3))), 0U);
        const auto fragments = fragmentsOf(ipPacket(known, payload(500, 3)), 400);
        EXPECT_EQ(filtered(filter, fragments[0]), 20U + 8 + keptOfPayload);
        EXPECT_EQ(filtered(filter, fragments[1]), 60U);
        EXPECT_EQ(filtered(filter, packetFrom(gige::controlPort, other, payload(700, 0))),
                  20U + 8 + 548);
        for (const bool hasExtendedIds : {false, true}) {
            const script::Camera camera{hasExtendedIds};
            const std::pair<Bytes, bool> cases[] = {{camera.leader(7, 1), true},
                                                    {camera.trailer(7), false},
                                                    {camera.packet(script::Leader, 7, 1), false},
                                                    {Bytes(60, 'a'), false},
                                                    {Bytes(5), false}};
            for (const auto& [bytes, isLeader] : cases) {
                const Bytes packet = ipPacket(other, bytes);
                const bool isExpected =
                    isLeader || (hasExtendedIds && bytes == camera.packet(script::Leader, 7, 1));
                EXPECT_EQ(filtered(filter, packet), isExpected ? packet.size() : 0U);
                gige::UdpDatagram datagram;
                ASSERT_TRUE(
                    gige::readIpDatagram(packet.data(), packet.size(), packet.size(), datagram));
                EXPECT_EQ(mayBeLeader(datagram), isExpected);
            }
        }
    }
}

enum class Kind { Ring, Udp };

class PacketSources : public testing::TestWithParam<Kind> {
protected:
    static constexpr std::size_t largestPacket = 9000;

    void SetUp() override {
        ASSERT_TRUE(m_camera.bindTo(cameraAddress, 0));
        ASSERT_TRUE(m_stranger.bindTo(strangerAddress, 0));
        ASSERT_TRUE(m_host->bindTo(hostAddress, 0));
        m_host->set(SOL_SOCKET, SO_RCVBUF, 200'000);
        if (GetParam() == Kind::Ring)
            m_source = PacketRing::open("lo");
        else
            m_source = std::make_unique<UdpPackets>(m_host, largestPacket);
        if (!m_source)
            GTEST_SKIP() << "this user may not open packet sockets";
        m_source->listen({endpoint()});
    }

    StreamEndpoint endpoint(bool headersOnly = false) const {
        return {cameraAddress, hostAddress, m_host->localPort(), headersOnly};
    }
    void sendFrom(const platform::UdpSocket& from, const Bytes& data, int step = 0) const {
        const auto port = static_cast<std::uint16_t>(m_host->localPort() + step);
        const sockaddr_in to = platform::socketAddress(hostAddress, port);
        ASSERT_EQ(sendto(from.handle(), data.data(), data.size(), 0,
                         reinterpret_cast<const sockaddr*>(&to), sizeof to),
                  static_cast<ssize_t>(data.size()));
    }
    void send(const Bytes& data) const { sendFrom(m_camera, data); }
    /// Receives until \p count packets have come, and everything that comes with them. Leaves out
    /// other programs' packets.
    std::vector<Received> receive(std::size_t count) const {
        std::vector<Received> received;
        const auto end = std::chrono::steady_clock::now() + 10s;
        while (received.size() < count && std::chrono::steady_clock::now() < end)
            m_source->receive(100ms, [&](const StreamDatagram& datagram) {
                if ((datagram.sender ^ baseAddress) < 16)
                    received.emplace_back(Bytes(datagram.data, datagram.data + datagram.captured),
                                          datagram.size);
            });
        return received;
    }

    const platform::UdpSocket m_camera;
    const platform::UdpSocket m_stranger;
    const std::shared_ptr<platform::UdpSocket> m_host = std::make_shared<platform::UdpSocket>();
    std::unique_ptr<PacketSource> m_source;
};

INSTANTIATE_TEST_SUITE_P(Kinds, PacketSources, testing::Values(Kind::Ring, Kind::Udp),
                         [](const auto& tested) {
                             return tested.param == Kind::Ring ? "Ring" : "Udp";
                         });

TEST_P(PacketSources, handOverPacketsOfTheEndpointOnceAndWhole) {
    std::vector<Received> expected;
    for (const std::size_t size : {1000U, 0U, 1U, 28U, 1472U, 9000U, 8U}) {
        const Bytes data = payload(size, 3);
        send(data);
        expected.emplace_back(data, size);
        sendFrom(m_stranger, data);
        sendFrom(m_camera, data, 1);
        sendFrom(m_camera, data, -1);
    }
    EXPECT_EQ(receive(expected.size()), expected);
    m_source->listen({});
    send(payload(100, 3));
    m_source->receive(20ms, [](const StreamDatagram&) { ADD_FAILURE() << "nobody listens"; });
}

TEST_P(PacketSources, handOverHeadersAndAllThatIsNoPayload) {
    m_source->listen({endpoint(true)});
    const bool isRing = GetParam() == Kind::Ring;
    std::vector<Received> expected;
    for (const std::size_t size : {9000U, 9001U, 5000U}) {
        send(payload(size, 0x83));
        expected.emplace_back(payload(isRing ? 28 : std::min(size, largestPacket), 0x83), size);
        send(payload(size - 4000, 4));
        expected.emplace_back(payload(size - 4000, 4), size - 4000);
    }
    EXPECT_EQ(receive(expected.size()), expected);
    send(payload(largestPacket + 1, 4));
    send(payload(8, 2));
    EXPECT_EQ(receive(isRing ? 2 : 1).front().second, isRing ? largestPacket + 1 : 8);
}

TEST_P(PacketSources, loseNothingWhileEndpointsChange) {
    std::atomic<bool> isDone{false};
    auto others = std::async(std::launch::async, [&] {
        for (unsigned i = 0; !isDone; i = (i + 37) % 1500) {
            auto endpoints = endpointsOf(i);
            endpoints.insert(endpoints.begin(), endpoint());
            m_source->listen(endpoints);
        }
    });
    for (int round = 0; round < 100 && !HasFailure(); ++round) {
        std::vector<Received> expected;
        for (int i = 0; i < 50; ++i) {
            expected.emplace_back(Bytes(100, static_cast<std::uint8_t>(50 * round + i)), 100);
            send(expected.back().first);
        }
        EXPECT_EQ(receive(expected.size()), expected);
    }
    isDone = true;
    others.get();
    EXPECT_EQ(m_source->counts().dropped, 0U);
}

TEST_P(PacketSources, areWokenBeforeAndWhileTheyWait) {
    const auto begun = std::chrono::steady_clock::now();
    const auto refuse = [](const StreamDatagram&) {
        ADD_FAILURE();
    };
    m_source->wake();
    m_source->wake();
    m_source->receive(20s, refuse);
    auto waking = std::async(std::launch::async, [this] {
        std::this_thread::sleep_for(20ms);
        m_source->wake();
    });
    m_source->receive(20s, refuse);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 10s);
    EXPECT_GE(std::chrono::steady_clock::now() - begun, 20ms) << "both calls ended one wait";
    m_source->receive(30ms, refuse);
    EXPECT_GE(std::chrono::steady_clock::now() - begun, 50ms) << "a wait without a reason to end";
}

TEST_P(PacketSources, countWhatTheyHadNoRoomFor) {
    const bool isRing = GetParam() == Kind::Ring;
    const std::size_t count = isRing ? 8500 : 2000;
    for (std::size_t i = 0; i < count; ++i)
        send(payload(isRing ? 8000 : 100, 3));
    const std::uint64_t dropped = m_source->counts().dropped;
    EXPECT_GT(dropped, 0U);
    EXPECT_EQ(m_source->counts().dropped, dropped);
    EXPECT_EQ(m_source->counts().freezes, isRing ? 1U : 0U);
    EXPECT_EQ(receive(count - dropped).size(), count - dropped) << "all that is at hand";
    send(payload(10, 1));
    EXPECT_EQ(receive(1).size(), 1U) << "there is room again";
    EXPECT_EQ(m_source->counts().dropped, dropped);
}

TEST_P(PacketSources, ignoreMalformedPacketsAlsoWithoutAFilterThatFits) {
    // Sends bytes as they are; other sockets complete headers.
    const platform::Descriptor raw(socket(AF_PACKET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!raw.isOpen())
        GTEST_SKIP() << "this user may not open packet sockets";
    sockaddr_ll to{};
    to.sll_family = AF_PACKET;
    to.sll_protocol = htons(ETH_P_IP);
    to.sll_ifindex = static_cast<int>(if_nametoindex("lo"));
    auto endpoints = endpointsOf(1500);
    endpoints.insert(endpoints.begin(), endpoint());
    for (const auto& listened : {std::vector{endpoint()}, endpoints}) {
        m_source->listen({});
        m_source->listen(listened);
        for (const Bytes& packet : malformedPackets(endpoint()))
            EXPECT_GE(sendto(raw.handle(), packet.data(), packet.size(), 0,
                             reinterpret_cast<const sockaddr*>(&to), sizeof to),
                      0);
        send(payload(33, 1));
        EXPECT_EQ(receive(1), std::vector<Received>({{payload(33, 1), 33}}));
    }
}

TEST(AdapterRing, goesOnWithAnAdapterThatWasRemovedAndMadeAnew) {
    const char* const make = "ip link add cam0 type veth peer name cam1 2>/dev/null && "
                             "ip link set cam0 up && ip link set cam1 up";
    const platform::Descriptor raw(socket(AF_PACKET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    const auto send = [&raw](const Bytes& packet) {
        sockaddr_ll to{};
        to.sll_family = AF_PACKET;
        to.sll_protocol = htons(ETH_P_IP);
        to.sll_ifindex = static_cast<int>(if_nametoindex("cam1"));
        ASSERT_GE(sendto(raw.handle(), packet.data(), packet.size(), 0,
                         reinterpret_cast<const sockaddr*>(&to), sizeof to),
                  0);
    };
    if (!raw.isOpen() || std::system(make) != 0)
        GTEST_SKIP() << "this user may not make adapters";
    const auto ring = AdapterRing::open("cam0", PacketRing::observing);
    ASSERT_TRUE(ring);
    const StreamEndpoint known{cameraAddress, hostAddress, 4711, true};
    ring->listen({known});
    const auto end = std::chrono::steady_clock::now() + 20s;
    int seen = 0;
    const auto receiveUntil = [&](const auto& isReached) {
        while (!isReached() && std::chrono::steady_clock::now() < end)
            ring->receive(50ms, [&seen](const StreamDatagram&) { ++seen; });
        EXPECT_TRUE(isReached());
    };
    for (int i = 0; i < 3; ++i) {
        send(ipPacket(known, payload(500, 3)));
        receiveUntil([&] { return seen == i + 1; });
        EXPECT_EQ(std::system("ip link del cam0"), 0);
        receiveUntil([&] { return ring->counts().removals == static_cast<unsigned>(i) + 1; });
        ring->wake();
        ring->receive(20s, [](const StreamDatagram&) { ADD_FAILURE(); });
        EXPECT_EQ(std::system(make), 0);
        receiveUntil([&] { return ring->counts().returns == static_cast<unsigned>(i) + 1; });
    }
    // More than the 32 blocks of 256 KB that are read at once.
    constexpr int count = 20'000;
    seen = 0;
    for (int i = 0; i < count; ++i)
        send(packetFrom(gige::controlPort, known, payload(500, 0)));
    EXPECT_EQ(std::system("ip link del cam0"), 0);
    receiveUntil([&] { return ring->counts().removals == 4; });
    EXPECT_EQ(seen, count);
    EXPECT_LT(std::chrono::steady_clock::now(), end);
}

/// An Ethernet frame of the IPv4 packet behind these VLAN tags (protocol and control information).
Bytes tagged(const std::vector<std::uint32_t>& tags, const Bytes& packet) {
    Bytes frame(12, 0);
    for (const std::uint32_t tag : tags)
        script::append(frame, tag, 4);
    script::append(frame, ETH_P_IP, 2);
    frame.insert(frame.end(), packet.begin(), packet.end());
    return frame;
}

TEST(ObservingRing, takesTaggedPacketsAndFragmentsAsTheKernelDoes) {
    const platform::Descriptor raw(socket(AF_PACKET, SOCK_RAW | SOCK_CLOEXEC, 0));
    const auto ring = PacketRing::open("lo", PacketRing::observing);
    if (!ring || !raw.isOpen())
        GTEST_SKIP() << "this user may not open packet sockets";
    const StreamEndpoint known{cameraAddress, hostAddress, 4711, true};
    ring->listen({known});
    sockaddr_ll to{};
    to.sll_family = AF_PACKET;
    to.sll_ifindex = static_cast<int>(if_nametoindex("lo"));
    const auto send = [&](const Bytes& frame) {
        ASSERT_EQ(sendto(raw.handle(), frame.data(), frame.size(), 0,
                         reinterpret_cast<const sockaddr*>(&to), sizeof to),
                  static_cast<ssize_t>(frame.size()));
    };
    const Bytes packet = ipPacket(known, payload(500, 3));
    send(tagged({}, packet));
    // Of a priority only; of a VLAN that this host has not; of two, which no socket for IPv4 gets.
    send(tagged({0x8100E000}, packet));
    send(tagged({0x8100A005}, packet));
    send(tagged({0x88A80006, 0x81000005}, packet));
    for (const Bytes& fragment : fragmentsOf(packet, 400))
        send(tagged({}, fragment));

    using Seen = std::tuple<gige::Fragment, std::size_t, std::uint32_t>;
    std::vector<Seen> seen;
    const auto end = std::chrono::steady_clock::now() + 10s;
    while (seen.size() < 5 && std::chrono::steady_clock::now() < end)
        ring->receive(100ms, [&](const StreamDatagram& datagram) {
            EXPECT_EQ(gige::bigEndian32(datagram.packet + 12), cameraAddress);
            EXPECT_EQ(datagram.link->sll_hatype, ARPHRD_LOOPBACK);
            seen.emplace_back(datagram.fragment, datagram.size, datagram.packetSize);
        });
    using gige::Fragment;
    const Seen whole{Fragment::Whole, 500, 528};
    EXPECT_EQ(seen,
              (std::vector<Seen>{
                  whole, whole, whole, {Fragment::First, 500, 420}, {Fragment::Later, 108, 128}}));
}

} // namespace
