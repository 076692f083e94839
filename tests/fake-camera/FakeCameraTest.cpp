// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/Protocol.h"
#include "orvcpp/aravis/GObjects.h"
#include "platform/UdpSocket.h"
#include "tests/support/FakeCameraProcess.h"
#include "tests/support/HostStalls.h"

#include <gmock/gmock.h>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <chrono>
#include <cstring>

namespace {

using namespace fakecamera;
using orv::aravis::GObjectPtr;
using namespace std::chrono_literals;
using namespace testing;

/// A packet of a stream, with the kernel's time of its arrival.
struct Packet {
    std::chrono::nanoseconds moment;
    std::uint64_t frameId;
    protocol::StreamPacket type;
    std::size_t size;
};

/// A host that uses Aravis for the camera's registers, and its own socket for the stream.
class Host {
public:
    Host() {
        const GObjectPtr<GInetAddress> own(g_inet_address_new_from_string("127.0.0.1"));
        const GObjectPtr<GInetAddress> cameras(g_inet_address_new_from_string(onlyAddress));
        GError* error = nullptr;
        m_device.reset(arv_gv_device_new(own.get(), cameras.get(), &error));
        EXPECT_EQ(error, nullptr) << error->message;
        EXPECT_TRUE(m_socket.bindTo(INADDR_LOOPBACK, 0));
        m_socket.set(SOL_SOCKET, SO_RCVBUF, 4 << 20);
        m_socket.set(SOL_SOCKET, SO_TIMESTAMPNS, 1);
    }

    ArvDevice* device() const { return m_device.get(); }
    void set(const char* name, const char* value) {
        arv_device_set_features_from_string(device(), (std::string(name) + "=" + value).c_str(),
                                            nullptr);
    }
    double number(const char* name) {
        return arv_device_get_float_feature_value(device(), name, nullptr);
    }

    void start() {
        arv_device_set_integer_feature_value(device(), "GevSCDA", m_socket.localAddress(), nullptr);
        arv_device_set_integer_feature_value(device(), "GevSCPHostPort", m_socket.localPort(),
                                             nullptr);
        arv_device_execute_command(device(), "AcquisitionStart", nullptr);
    }

    /// The next packets up to the end of \p frames, or until none came for half a second.
    std::vector<Packet> receive(int frames) {
        std::vector<Packet> packets;
        pollfd readable{m_socket.handle(), POLLIN, 0};
        while (frames > 0 && poll(&readable, 1, 500) == 1) {
            packets.push_back(receivePacket());
            frames -= packets.back().type == protocol::StreamPacket::Trailer ? 1 : 0;
        }
        return packets;
    }

private:
    Packet receivePacket() {
        std::uint8_t bytes[9000];
        alignas(cmsghdr) char control[64];
        iovec part{bytes, sizeof bytes};
        msghdr message{};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        message.msg_control = control;
        message.msg_controllen = sizeof control;
        const ssize_t size = recvmsg(m_socket.handle(), &message, 0);
        timespec moment{};
        std::memcpy(&moment, CMSG_DATA(CMSG_FIRSTHDR(&message)), sizeof moment);
        const bool extended = (bytes[4] & 0x80) != 0;
        return {std::chrono::seconds(moment.tv_sec) + std::chrono::nanoseconds(moment.tv_nsec),
                extended ? protocol::get64(bytes + 8) : protocol::get16(bytes + 2),
                static_cast<protocol::StreamPacket>(bytes[4] & 0x0f),
                static_cast<std::size_t>(size)};
    }

    GObjectPtr<ArvDevice> m_device;
    platform::UdpSocket m_socket;
};

/// The times at which frames begin, in seconds.
std::vector<double> beginnings(const std::vector<Packet>& packets) {
    std::vector<double> times;
    for (const Packet& packet : packets)
        if (packet.type == protocol::StreamPacket::Leader)
            times.push_back(std::chrono::duration<double>(packet.moment).count());
    return times;
}

TEST(FakeCameraRate, isOnTheWireWhatTheFeatureSays) {
    const char* const limit = "DeviceLinkThroughputLimit";
    const char* const packetSize = "GevSCPSPacketSize";
    const struct {
        std::vector<std::pair<const char*, const char*>> settings;
        double rate;
    } cases[] = {{{{"ExposureTime", "20000"}}, 50},
                 {{{limit, "5120000"}}, 20},
                 {{{limit, "5120000"}, {"PixelFormat", "Mono16"}}, 10},
                 {{{limit, "20480000"}, {packetSize, "8000"}}, 80},
                 {{{limit, "2560000"}, {"Width", "64"}, {packetSize, "8000"}}, 80},
                 {{{limit, "5120000"}, {"DeviceLinkThroughputLimitMode", "Off"}}, 100},
                 {{{"AcquisitionFrameRateEnable", "true"}, {"AcquisitionFrameRate", "30"}}, 30}};
    for (const auto& [settings, expected] : cases) {
        const FakeCameraProcess camera(onlyAddress, {"--width", "512", "--height", "500"});
        Host host;
        for (const auto& [name, value] : settings)
            host.set(name, value);
        EXPECT_NEAR(host.number("AcquisitionFrameRate"), expected, 0.001);
        host.start();
        host.receive(1);
        // A busy machine may delay the camera, but never makes it faster. The camera does not catch
        // up with a delay of more than 2 ms.
        const HostStalls stalls(3ms);
        constexpr std::size_t few = 5;
        double best = 0;
        for (int i = 0; i < 12 && best < 0.98 * expected; ++i) {
            const auto times = beginnings(host.receive(static_cast<int>(expected / 2) + 3));
            ASSERT_GT(times.size(), few);
            EXPECT_LT(static_cast<double>(times.size() - 1) / (times.back() - times.front()),
                      1.02 * expected);
            for (std::size_t last = few; last < times.size(); ++last)
                best = std::max(best, few / (times[last] - times[last - few]));
        }
        EXPECT_GT(best, (stalls.count() == 0 ? 0.98 : 0.8) * expected);
    }
}

TEST(FakeCamera, spreadsItsPacketsOverTheTimeOfItsLimitAndDropsEachNth) {
    const FakeCameraProcess camera(
        onlyAddress, {"--frame-rate", "9", "--limit", "10485760", "--drop-every", "200"});
    Host host;
    host.start();
    auto half = 1000000000ns;
    auto whole = half;
    for (std::size_t i = 0; i < 20 && (half > 55ms || whole > 105ms); ++i) {
        const std::vector<Packet> frame = host.receive(1);
        // 1,048,576 bytes in packets of 1364 bytes: 769 data packets, of which three or four lack.
        const std::size_t dropped = 769 * (i + 1) / 200 - 769 * i / 200;
        ASSERT_EQ(frame.size(), 769 - dropped + 2);
        half = frame[frame.size() / 2].moment - frame.front().moment;
        whole = frame.back().moment - frame.front().moment;
        // A busy machine may delay the camera, but never makes it faster. The camera does not catch
        // up with a delay of more than 2 ms.
        const HostStalls stalls(3ms);
        EXPECT_GT(half, 47ms);
        EXPECT_GT(whole, 97ms);
    }
    EXPECT_LT(half, 55ms);
    EXPECT_LT(whole, 105ms);
}

TEST(FakeCamera, waitsForTriggersAndSendsTestPackets) {
    const FakeCameraProcess camera(
        onlyAddress, {"--packet-size", "8000", "--first-frame-id", "65535", "--extended-ids", "1"});
    Host host;
    host.set("TriggerMode", "On");
    host.set("TriggerSource", "Software");
    host.start();
    EXPECT_THAT(host.receive(1), IsEmpty());
    for (const std::uint64_t id : {65535U, 65536U}) {
        arv_device_execute_command(host.device(), "TriggerSoftware", nullptr);
        const std::vector<Packet> frame = host.receive(1);
        EXPECT_THAT(frame, AllOf(SizeIs(Gt(2)), Each(Field(&Packet::frameId, id))));
    }
    host.set("GevSCPSFireTestPacket", "true");
    EXPECT_THAT(host.receive(1), ElementsAre(Field(&Packet::size, 8000 - protocol::ipAndUdpSize)));
}

} // namespace
