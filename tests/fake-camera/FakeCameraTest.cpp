// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/Protocol.h"
#include "platform/UdpSocket.h"
#include "tests/support/FakeCameraProcess.h"

#include <gmock/gmock.h>

#include <arv.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <thread>

namespace {

using namespace fakecamera;
using namespace std::chrono_literals;
using testing::ElementsAre;
using Clock = std::chrono::steady_clock;

const std::string address = "127.0.0.2";

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
        const auto own = inetAddress("127.0.0.1");
        const auto cameras = inetAddress(address);
        GError* error = nullptr;
        m_device.reset(arv_gv_device_new(own.get(), cameras.get(), &error));
        EXPECT_EQ(error, nullptr) << error->message;
        EXPECT_TRUE(m_socket.bindTo(INADDR_LOOPBACK, 0));
        m_socket.set(SOL_SOCKET, SO_RCVBUF, 4 << 20);
        m_socket.set(SOL_SOCKET, SO_TIMESTAMPNS, 1);
    }

    ArvDevice* device() const { return m_device.get(); }
    bool hasControl() const { return arv_gv_device_is_controller(ARV_GV_DEVICE(m_device.get())); }
    void set(const char* name, const char* value) {
        arv_device_set_features_from_string(device(), (std::string(name) + "=" + value).c_str(),
                                            nullptr);
    }
    gint64 integer(const char* name) {
        return arv_device_get_integer_feature_value(device(), name, nullptr);
    }
    double number(const char* name) {
        return arv_device_get_float_feature_value(device(), name, nullptr);
    }
    bool isLocked(const char* name) {
        ArvGcNode* const node = arv_device_get_feature(device(), name);
        return arv_gc_feature_node_is_locked(ARV_GC_FEATURE_NODE(node), nullptr) != 0;
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

    std::vector<std::uint64_t> receiveIds(int frames) {
        std::vector<std::uint64_t> ids;
        for (const Packet& packet : receive(frames))
            if (packet.type == protocol::StreamPacket::Leader)
                ids.push_back(packet.frameId);
        return ids;
    }

private:
    template <typename Class> using Object = std::unique_ptr<Class, decltype(&g_object_unref)>;

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

    static Object<GInetAddress> inetAddress(const std::string& text) {
        return {g_inet_address_new_from_string(text.c_str()), g_object_unref};
    }

    Object<ArvDevice> m_device{nullptr, g_object_unref};
    platform::UdpSocket m_socket;
};

/// Frames per second: of all frames, and of the fastest few in a row.
struct MeasuredRate {
    double mean = 0;
    double best = 0;
};

MeasuredRate rate(const std::vector<Packet>& packets) {
    std::vector<std::chrono::duration<double>> beginnings;
    for (const Packet& packet : packets)
        if (packet.type == protocol::StreamPacket::Leader)
            beginnings.emplace_back(packet.moment);
    const auto between = [&](std::size_t first, std::size_t last) {
        return static_cast<double>(last - first) / (beginnings[last] - beginnings[first]).count();
    };
    constexpr std::size_t few = 5;
    MeasuredRate measured;
    for (std::size_t last = few; last < beginnings.size(); ++last) {
        measured.best = std::max(measured.best, between(last - few, last));
        measured.mean = between(0, last);
    }
    return measured;
}

/// Settings of a camera, and the frames per second that follow.
struct Rate {
    std::vector<std::pair<const char*, const char*>> settings;
    double rate;
};

class FakeCameraRate : public testing::TestWithParam<Rate> {};

TEST_P(FakeCameraRate, isOnTheWireWhatTheFeatureSays) {
    const FakeCameraProcess camera(address, {"--width", "512", "--height", "500"});
    Host host;
    for (const auto& [name, value] : GetParam().settings)
        host.set(name, value);
    EXPECT_NEAR(host.number("AcquisitionFrameRate"), GetParam().rate, 0.001);
    host.start();
    host.receive(1);
    const int frames = static_cast<int>(GetParam().rate / 2) + 3;
    // A busy machine may delay the camera, but never makes it faster.
    double best = 0;
    for (int i = 0; i < 12 && best < 0.98 * GetParam().rate; ++i) {
        const MeasuredRate measured = rate(host.receive(frames));
        EXPECT_LT(measured.mean, 1.02 * GetParam().rate);
        best = measured.best;
    }
    EXPECT_GT(best, 0.98 * GetParam().rate);
}

INSTANTIATE_TEST_SUITE_P(
    , FakeCameraRate,
    testing::Values(
        Rate{{}, 100}, Rate{{{"ExposureTime", "20000"}}, 50},
        Rate{{{"DeviceLinkThroughputLimit", "5120000"}}, 20},
        Rate{{{"DeviceLinkThroughputLimit", "5120000"}, {"Width", "256"}}, 40},
        Rate{{{"DeviceLinkThroughputLimit", "5120000"}, {"PixelFormat", "Mono16"}}, 10},
        Rate{{{"DeviceLinkThroughputLimit", "20480000"}, {"GevSCPSPacketSize", "1500"}}, 80},
        Rate{{{"DeviceLinkThroughputLimit", "20480000"}, {"GevSCPSPacketSize", "8000"}}, 80},
        Rate{{{"DeviceLinkThroughputLimit", "2560000"},
              {"Width", "64"},
              {"GevSCPSPacketSize", "8000"}},
             80},
        Rate{{{"DeviceLinkThroughputLimit", "5120000"}, {"DeviceLinkThroughputLimitMode", "Off"}},
             100},
        Rate{{{"AcquisitionFrameRateEnable", "true"}, {"AcquisitionFrameRate", "30"}}, 30}));

TEST(FakeCamera, spreadsItsPacketsOverTheTimeOfItsLimit) {
    const FakeCameraProcess camera(address, {"--frame-rate", "9", "--limit", "10485760"});
    Host host;
    host.start();
    auto half = 1000000000ns;
    auto whole = half;
    for (int i = 0; i < 20 && (half > 55ms || whole > 105ms); ++i) {
        const std::vector<Packet> frame = host.receive(1);
        ASSERT_EQ(frame.size(), 771u);
        half = frame[frame.size() / 2].moment - frame.front().moment;
        whole = frame.back().moment - frame.front().moment;
        // A busy machine may delay the camera, but never makes it faster.
        EXPECT_GT(half, 47ms);
        EXPECT_GT(whole, 97ms);
    }
    EXPECT_LT(half, 55ms);
    EXPECT_LT(whole, 105ms);
}

TEST(FakeCamera, numbersFramesFromTheGivenNumber) {
    FakeCameraProcess camera(address, {"--first-frame-id", "65534"});
    {
        Host host;
        host.start();
        EXPECT_THAT(host.receiveIds(4), ElementsAre(65534, 65535, 1, 2));
    }
    camera.kill();
    const FakeCameraProcess extended(address, {"--first-frame-id", "65535", "--extended-ids", "1"});
    Host host;
    host.start();
    EXPECT_THAT(host.receiveIds(3), ElementsAre(65535, 65536, 65537));
}

TEST(FakeCamera, withholdsPacketsUntilAHostAsksForThem) {
    const FakeCameraProcess camera(address, {"--drop-every", "200", "--frame-rate", "20"});
    Host host;
    // 1,048,576 bytes in packets of 1364 bytes: 769 data packets, of which every 200th is missing.
    host.start();
    EXPECT_EQ(host.receive(1).size(), 769u - 3u + 2u);
    arv_device_execute_command(host.device(), "AcquisitionStop", nullptr);

    const std::unique_ptr<ArvStream, decltype(&g_object_unref)> stream(
        arv_device_create_stream(host.device(), nullptr, nullptr, nullptr), g_object_unref);
    arv_stream_push_buffer(stream.get(), arv_buffer_new_allocate(1048576));
    arv_device_execute_command(host.device(), "AcquisitionStart", nullptr);
    ArvBuffer* const buffer = arv_stream_timeout_pop_buffer(stream.get(), 5000000);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(arv_buffer_get_status(buffer), ARV_BUFFER_STATUS_SUCCESS);
    EXPECT_GE(host.integer("TestPacketsResent"), 3);
    g_object_unref(buffer);
}

TEST(FakeCamera, isControlledByOneHostAtATime) {
    const FakeCameraProcess camera(address);
    auto first = std::make_unique<Host>();
    Host second;
    EXPECT_TRUE(first->hasControl());
    EXPECT_FALSE(second.hasControl());
    second.set("DeviceLinkThroughputLimit", "2000000");
    EXPECT_EQ(second.integer("DeviceLinkThroughputLimit"), 125000000);
    first->start();
    EXPECT_FALSE(first->receive(2).empty());
    EXPECT_TRUE(first->isLocked("Width"));
    first.reset();
    EXPECT_TRUE(arv_gv_device_take_control(ARV_GV_DEVICE(second.device()), nullptr));
    second.set("DeviceLinkThroughputLimit", "2000000");
    EXPECT_EQ(second.integer("DeviceLinkThroughputLimit"), 2000000);
    EXPECT_FALSE(second.isLocked("Width"));
}

TEST(FakeCamera, endsTheControlOfASilentHost) {
    const FakeCameraProcess camera(address, {"--heartbeat", "500"});
    const platform::UdpSocket silent;
    const std::uint8_t takeControl[] = {0x42, 0, 0, 0x82, 0, 8, 0, 1, 0, 0, 0x0a, 0, 0, 0, 0, 2};
    ASSERT_TRUE(silent.connectTo(INADDR_LOOPBACK + 1, protocol::controlPort));
    send(silent.handle(), takeControl, sizeof takeControl, 0);
    Host host;
    EXPECT_FALSE(host.hasControl());
    const auto start = Clock::now();
    while (!arv_gv_device_take_control(ARV_GV_DEVICE(host.device()), nullptr))
        ASSERT_LT(Clock::now() - start, 5s);
    EXPECT_TRUE(host.hasControl());
}

TEST(FakeCamera, waitsForTriggersAndSendsTestPackets) {
    const FakeCameraProcess camera(address, {"--packet-size", "8000"});
    Host host;
    host.set("TriggerMode", "On");
    host.set("TriggerSource", "Software");
    host.start();
    EXPECT_THAT(host.receive(1), testing::IsEmpty());
    arv_device_execute_command(host.device(), "TriggerSoftware", nullptr);
    EXPECT_THAT(host.receiveIds(2), ElementsAre(1));
    host.set("GevSCPSFireTestPacket", "true");
    const std::vector<Packet> test = host.receive(1);
    ASSERT_EQ(test.size(), 1u);
    EXPECT_EQ(test[0].size, 8000 - protocol::ipAndUdpSize);
}

TEST(FakeCamera, endsWithTheTestThatStartedIt) {
    const pid_t test = fork();
    if (test == 0) {
        const FakeCameraProcess camera(address);
        raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(test, &status, 0), test);
    ASSERT_EQ(WTERMSIG(status), SIGKILL);
    std::unique_ptr<FakeCameraProcess> next;
    const auto start = Clock::now();
    while (!next && Clock::now() - start < 5s) {
        try {
            next = std::make_unique<FakeCameraProcess>(address);
        } catch (const std::runtime_error&) {
            std::this_thread::sleep_for(10ms);
        }
    }
    EXPECT_TRUE(next) << "the address is not free";
}

TEST(FakeCamera, isNewAfterARestart) {
    FakeCameraProcess camera(address);
    Host host;
    host.set("DeviceLinkThroughputLimit", "2000000");
    host.start();
    EXPECT_FALSE(host.receive(1).empty());
    EXPECT_THROW(FakeCameraProcess{address}, std::runtime_error) << "the address is taken";
    camera.kill();
    host.receive(1000);
    camera.restart();
    EXPECT_THAT(host.receive(1), testing::IsEmpty());
    Host next;
    EXPECT_TRUE(next.hasControl());
    EXPECT_EQ(next.integer("DeviceLinkThroughputLimit"), 125000000);
}

} // namespace
