// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/Protocol.h"
#include "fake-camera/CameraRegisters.h"
#include "platform/Ipv4Address.h"
#include "platform/UdpSocket.h"
#include "tests/support/FakeCameraProcess.h"

#include <gmock/gmock.h>

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace {

using namespace fakecamera;
using namespace protocol;
using namespace testing;

using Bytes = std::vector<std::uint8_t>;

/// Numbers of four bytes, as they go over the wire.
Bytes words(const std::vector<std::uint32_t>& values) {
    Bytes bytes(4 * values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        put32(&bytes[4 * i], values[i]);
    return bytes;
}

Bytes request(std::uint16_t command, const Bytes& data, std::uint8_t flags = flagAcknowledge) {
    Bytes packet{commandKey, flags, 0, 0, 0, 0, 0, 7};
    put16(&packet[2], command);
    put16(&packet[4], static_cast<std::uint16_t>(data.size()));
    packet.insert(packet.end(), data.begin(), data.end());
    return packet;
}

/// Data of ForceIp for a camera with an IPv4 address, whose MAC address ends like that.
Bytes forced(std::uint32_t camera, std::uint32_t address) {
    return words({0x02fc, camera, 0, 0, 0, address, 0, 0, 0, 0xff000000, 0, 0, 0, 0});
}

/// The bytes from \p begin up to \p end.
Bytes cut(const Bytes& bytes, std::size_t begin, std::size_t end = 9000) {
    const auto at = [&](std::size_t i) {
        return bytes.data() + std::min(i, bytes.size());
    };
    return {at(begin), at(end)};
}

/// A host that sends and receives raw packets.
class RawHost {
public:
    RawHost() { EXPECT_TRUE(m_socket.bindTo(INADDR_LOOPBACK, 0)); }

    void send(const Bytes& packet) {
        sendto(m_socket.handle(), packet.data(), packet.size(), 0,
               reinterpret_cast<const sockaddr*>(&m_camera), sizeof m_camera);
    }

    /// The next packet; empty when none arrives in time.
    Bytes receive(int milliseconds = 5000) {
        pollfd readable{m_socket.handle(), POLLIN, 0};
        Bytes packet(9000);
        const bool isThere = poll(&readable, 1, milliseconds) == 1;
        const ssize_t size = isThere ? recv(m_socket.handle(), packet.data(), packet.size(), 0) : 0;
        packet.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        return packet;
    }

    Bytes ask(const Bytes& packet) {
        send(packet);
        return receive();
    }

    /// Sends a request and skips all answers before its answer; empty when that does not arrive.
    Bytes skipAnswers() {
        Bytes own = request(Discovery, {});
        put16(&own[6], 8);
        send(own);
        Bytes answer = receive();
        while (!answer.empty() && get16(&answer[6]) != 8)
            answer = receive();
        return answer;
    }

    /// The status that answers the reading of a register.
    std::uint16_t read(std::uint32_t from) {
        return get16(ask(request(ReadRegister, words({from}))).data());
    }
    std::uint16_t write(std::vector<std::uint32_t> addressesAndValues) {
        return get16(ask(request(WriteRegister, words(addressesAndValues))).data());
    }

    /// Makes the camera send frames of 64 x 16 bytes in packets of 576 to a host.
    void takeFrames(const RawHost& receiver) {
        const auto& to = receiver.m_socket;
        EXPECT_EQ(write({ControlPrivilege, controlAccess, Width, 64, Height, 16, StreamPacketSize,
                         576, StreamAddress, to.localAddress(), StreamPort, to.localPort()}),
                  Success);
    }

    void start() { send(request(WriteRegister, words({Acquisition, 1}), 0)); }

    std::vector<Bytes> receivePackets(int count) {
        std::vector<Bytes> packets;
        for (int i = 0; i < count; ++i)
            packets.push_back(receive());
        return packets;
    }

private:
    const sockaddr_in m_camera = platform::socketAddress(INADDR_LOOPBACK + 1, controlPort);
    platform::UdpSocket m_socket;
};

TEST(ControlProtocol, refusesWrongRequests) {
    struct {
        const char* what;
        std::uint16_t command;
        Bytes data;
        Status status;
    } const cases[] = {
        {"a command that is none", 0x1234, {}, NotImplemented},
        {"reading nothing", ReadRegister, {}, InvalidParameter},
        {"reading half a register", ReadRegister, {0, 0, 1}, InvalidParameter},
        {"reading between registers", ReadRegister, words({Width, Width + 1}), BadAlignment},
        {"writing nothing", WriteRegister, {}, InvalidParameter},
        {"writing half", WriteRegister, words({Width}), InvalidParameter},
        {"writing between registers", WriteRegister, words({Width + 2, 64}), BadAlignment},
        {"writing behind registers", WriteRegister, words({0x10000, 1}), InvalidAddress},
        {"writing what is read only", WriteRegister, words({MacLow, 1}), WriteProtected},
        {"no width", WriteRegister, words({Width, 0}), InvalidParameter},
        {"too large a height", WriteRegister, words({Height, 0xffffffff}), InvalidParameter},
        {"packets of headers only", WriteRegister, words({StreamPacketSize, 36}), InvalidParameter},
        {"memory, but not how much", ReadMemory, words({0}), InvalidParameter},
        {"no memory", ReadMemory, words({0, 0}), InvalidParameter},
        {"too much memory", ReadMemory, words({0, 540}), InvalidParameter},
        {"half words of memory", ReadMemory, words({0, 6}), BadAlignment},
        {"memory behind the end", ReadMemory, words({0xffffff00, 536}), InvalidAddress},
        {"writing no memory", WriteMemory, words({UserId}), InvalidParameter},
        {"writing over the end", WriteMemory, words({UserId + 12, 0, 0}), WriteProtected},
        {"half an address", ForceIp, words({0x02fc, 0x7f000002}), InvalidHeader},
        {"an address while it is in use", ForceIp, forced(0x7f000002, 0x7f000003), AccessDenied},
        {"more than a packet may hold", ReadRegister, Bytes(544), InvalidHeader},
    };
    const FakeCameraProcess camera(onlyAddress);
    RawHost host;
    ASSERT_EQ(host.write({ControlPrivilege, controlAccess}), Success);
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        const Bytes answer = host.ask(request(each.command, each.data));
        ASSERT_GE(answer.size(), controlHeaderSize);
        EXPECT_EQ(get16(&answer[0]), each.status);
        EXPECT_EQ(get16(&answer[2]), each.command + 1);
        EXPECT_EQ(get16(&answer[4]), answer.size() - controlHeaderSize);
        EXPECT_EQ(get16(&answer[6]), 7);
    }
    const auto several = host.ask(request(WriteRegister, words({HeartbeatMilliseconds, 700, Version,
                                                                1, HeartbeatMilliseconds, 800})));
    EXPECT_THAT(several, ElementsAre(0x80, 0x04, 0, 0x83, 0, 4, 0, 7, 0, 0, 0, 1))
        << "the second is the one that failed";
    EXPECT_THAT(host.ask(request(ReadRegister, words({HeartbeatMilliseconds, Width}))),
                ElementsAre(0, 0, 0, 0x81, 0, 8, 0, 7, 0, 0, 0x02, 0xbc, 0, 0, 4, 0));
}

TEST(ControlProtocol, survivesEveryCutAndEveryWrongLength) {
    const FakeCameraProcess camera(onlyAddress);
    RawHost host;
    ASSERT_EQ(host.write({ControlPrivilege, controlAccess}), Success);
    const Bytes whole[] = {
        request(Discovery, {}),
        request(ReadRegister, words({Width, Height})),
        request(WriteRegister, words({HeartbeatMilliseconds, 3000, OffsetX, 0})),
        request(ReadMemory, words({0x10000, 64})),
        request(WriteMemory, words({UserId, 0x41424344, 0})),
        request(ForceIp, forced(0x7f000002, 0x7f000003)),
        request(PacketResend, words({1, 1, 2}), 0),
        request(PacketResend, words({0, 0, 0xffffffff, 0, 1}), flagExtendedIds),
    };
    for (const Bytes& packet : whole) {
        for (std::size_t size = 0; size <= packet.size(); ++size)
            host.send(cut(packet, 0, size));
        for (const int length : {0, 1, 3, 4, 540, 541, 0x7fff, 0xffff}) {
            Bytes wrong = packet;
            put16(&wrong[4], static_cast<std::uint16_t>(length));
            host.send(wrong);
            wrong.resize(controlHeaderSize + static_cast<std::size_t>(std::min(length, 3000)));
            host.send(wrong);
        }
        ASSERT_THAT(host.skipAnswers(), SizeIs(256u));
    }
    // These get no answer: the next answer is that of the last request.
    host.send({});
    host.send({commandKey, flagAcknowledge, 0, 2});
    host.send({0x43, flagAcknowledge, 0, 2, 0, 0, 0, 8});
    host.send(request(ReadRegister, words({Width}), 0));
    host.send(request(PacketResend, words({1, 1, 1})));
    const Bytes answer = host.ask(request(Discovery, {}));
    ASSERT_THAT(answer, SizeIs(256u));
    EXPECT_THAT(cut(answer, 0, 12), ElementsAre(0, 0, 0, 3, 0, 248, 0, 7, 0, 1, 0, 2));
}

TEST(ControlProtocol, takesOnlyItsOwnAddressAndOnlyOneThatItCanHave) {
    const FakeCameraProcess camera(onlyAddress);
    RawHost host;
    host.send(request(ForceIp, forced(0x7f000003, 0x7f000004)));
    EXPECT_THAT(host.skipAnswers(), SizeIs(256u)) << "no answer for another camera";
    for (const std::uint32_t address : {0u, 0xc0000201u})
        EXPECT_EQ(get16(host.ask(request(ForceIp, forced(0x7f000002, address))).data()),
                  LocalProblem);
    EXPECT_EQ(host.read(Width), Success) << "at its old address";
    EXPECT_EQ(get16(host.ask(request(ForceIp, forced(0x7f000002, 0x7f000003))).data()), Success);
    host.send(request(Discovery, {}));
    EXPECT_THAT(host.receive(300), IsEmpty()) << "has left it";
}

TEST(ControlProtocol, belongsToOneHostUntilItLeavesOrFallsSilent) {
    const FakeCameraProcess camera(onlyAddress, {"--heartbeat", "500"});
    RawHost owner;
    RawHost other;
    RawHost third;
    RawHost stream;
    EXPECT_EQ(owner.write({ControlPrivilege, exclusiveAccess}), Success);
    EXPECT_EQ(other.read(Width), AccessDenied);
    EXPECT_EQ(other.read(ControlPrivilege), Success);
    EXPECT_EQ(other.write({ControlPrivilege, controlAccess}), AccessDenied);
    EXPECT_EQ(owner.write({ControlPrivilege, 0}), Success);
    owner.takeFrames(stream);
    EXPECT_EQ(other.read(Width), Success);
    EXPECT_EQ(other.write({Width, 128}), AccessDenied);
    owner.start();
    EXPECT_THAT(stream.receive(), Not(IsEmpty()));
    EXPECT_EQ(owner.write({Width, 128}), AccessDenied) << "while it sends frames";
    EXPECT_EQ(owner.write({ControlPrivilege, 0}), Success);
    EXPECT_EQ(other.write({ControlPrivilege, controlAccess, Width, 128}), Success)
        << "the acquisition has ended, too";
    EXPECT_EQ(third.write({ControlPrivilege, controlAccess}), AccessDenied);
    const auto start = std::chrono::steady_clock::now();
    while (third.write({ControlPrivilege, controlAccess}) != Success)
        ASSERT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

/// The header of a packet of frame 1, and \p begin behind it.
Bytes streamPacket(bool extended, Status status, StreamPacket type, std::uint8_t number,
                   const Bytes& begin = {}) {
    Bytes bytes(extended ? extendedStreamHeaderSize : streamHeaderSize);
    put16(&bytes[0], status);
    bytes[4] = static_cast<std::uint8_t>(static_cast<unsigned>(type) | (extended ? 0x80 : 0));
    bytes[extended ? 15 : 3] = 1;
    bytes.back() = number;
    bytes.insert(bytes.end(), begin.begin(), begin.end());
    return bytes;
}

Bytes resend(bool extended, std::uint32_t frame, std::uint32_t first, std::uint32_t last) {
    return extended ? request(PacketResend, words({0, first, last, 0, frame}), flagExtendedIds)
                    : request(PacketResend, words({frame, first, last}), 0);
}

class FramePackets : public TestWithParam<bool> {};

TEST_P(FramePackets, followTheProtocolAndAreResent) {
    const bool extended = GetParam();
    const std::size_t header = extended ? extendedStreamHeaderSize : streamHeaderSize;
    const FakeCameraProcess camera(onlyAddress, {"--extended-ids", extended ? "1" : "0"});
    RawHost host;
    host.takeFrames(host);
    EXPECT_EQ(host.write({AcquisitionMode, 2}), Success);
    host.start();
    const std::vector<Bytes> packets = host.receivePackets(4);
    EXPECT_EQ(cut(packets[0], 0, header + 4),
              streamPacket(extended, Success, StreamPacket::Leader, 0, {0, 0, 0, 1}));
    EXPECT_EQ(cut(packets[0], header + 12), words({pixelFormatMono8, 64, 16, 0, 0, 0}));
    EXPECT_EQ(cut(packets[1], 0, header + 3),
              streamPacket(extended, Success, StreamPacket::Data, 1, {1, 2, 3}));
    EXPECT_THAT(packets[1], SizeIs(576 - ipAndUdpSize));
    EXPECT_EQ(cut(packets[2], 0, header), streamPacket(extended, Success, StreamPacket::Data, 2));
    EXPECT_EQ(packets[1].size() + packets[2].size(), 2 * header + 64 * 16);
    EXPECT_EQ(packets[3],
              streamPacket(extended, Success, StreamPacket::Trailer, 3, {0, 0, 0, 1, 0, 0, 0, 16}));
    EXPECT_THAT(host.receive(100), IsEmpty()) << "a single frame was asked for";

    // From a packet on until the frame's end.
    host.send(resend(extended, 1, 1, 0xffffff));
    for (std::size_t i = 1; i < 4; ++i) {
        Bytes expected = packets[i];
        put16(expected.data(), extended ? Resent : Success);
        EXPECT_EQ(host.receive(), expected);
    }
    host.send(resend(extended, 1, 9, 10));
    EXPECT_EQ(host.receive(), streamPacket(extended, PacketUnavailable, StreamPacket::Data, 9));
    host.send(resend(extended, 2, 0, 0xffffff));
    const Bytes gone = host.receive();
    EXPECT_THAT(gone, SizeIs(header));
    EXPECT_THAT(cut(gone, 0, 2), ElementsAre(0x80, 0x0c));
    const Bytes count = host.ask(request(ReadRegister, words({PacketsResent + 4})));
    EXPECT_EQ(cut(count, controlHeaderSize), words({3}));
}

INSTANTIATE_TEST_SUITE_P(, FramePackets, Bool(),
                         [](const auto& test) { return test.param ? "Extended" : "Plain"; });

TEST(StreamProtocol, resendsAFrameFromBeforeTheEndOfSixteenBits) {
    const FakeCameraProcess camera(onlyAddress, {"--first-frame-id", "65535", "--frame-rate", "5"});
    RawHost host;
    host.takeFrames(host);
    host.start();
    const std::vector<Bytes> packets = host.receivePackets(8);
    EXPECT_EQ(get16(&packets[7][2]), 1);
    host.send(resend(false, 65535, 0, 0));
    EXPECT_EQ(host.receive(), packets[0]) << "the leader, with its own time";
}

TEST(StreamProtocol, startsANewAcquisitionAfterAStop) {
    const FakeCameraProcess camera(onlyAddress, {"--frame-rate", "100"});
    RawHost host;
    host.takeFrames(host);
    host.start();
    EXPECT_THAT(host.receivePackets(12), Each(Not(IsEmpty())));
    host.send(request(WriteRegister, words({Acquisition, 0, Width, 128, Acquisition, 1}), 0));
    // The new acquisition numbers its frames from 1.
    Bytes leader = host.receive();
    for (int i = 0; i < 2000 && (leader.size() != 44 || get32(&leader[24]) != 128); ++i)
        leader = host.receive();
    EXPECT_EQ(get32(&leader[24]), 128u);
    EXPECT_EQ(get16(&leader[2]), 1);
}

} // namespace
