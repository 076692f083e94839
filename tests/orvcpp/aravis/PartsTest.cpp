// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/DeviceThread.h"
#include "orvcpp/aravis/device/ThreadPark.h"
#include "orvcpp/aravis/discovery/Gvcp.h"
#include "orvcpp/aravis/stream/FrameIds.h"
#include "platform/UdpSocket.h"

#include <gmock/gmock.h>

#include <chrono>
#include <future>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using namespace orv::aravis;

struct NumberCase {
    const char* what;
    std::uint64_t first;
    std::optional<std::uint64_t> previous;
    /// What the camera says; negative for an incomplete frame.
    std::vector<std::int64_t> raw;
    /// 0xBAD where the number is not to be trusted.
    std::vector<std::uint64_t> expected;
};

constexpr std::uint64_t untrusted = 0xBAD;

void PrintTo(const NumberCase& row, std::ostream* out) {
    *out << row.what;
}

class FrameNumbers : public testing::TestWithParam<NumberCase> {};

TEST_P(FrameNumbers, AreExtended) {
    FrameIds ids(GetParam().first, GetParam().previous);
    std::vector<std::uint64_t> extended;
    for (const std::int64_t raw : GetParam().raw)
        extended.push_back(
            ids.extend(static_cast<std::uint64_t>(std::abs(raw)), raw >= 0).value_or(untrusted));
    EXPECT_EQ(extended, GetParam().expected);
}

const std::int64_t beyond16Bits = 0x1FFFF;

INSTANTIATE_TEST_SUITE_P(
    Cases, FrameNumbers,
    testing::Values(
        NumberCase{"plain", 1, {}, {1, 2, 4}, {1, 2, 4}},
        NumberCase{"the first ones lost", 1, {}, {3, 4}, {3, 4}},
        NumberCase{"counts on from before", 1, 65000, {65001, 65003}, {1, 3}},
        NumberCase{"counts on from a small number", 1, 9, {10, 11}, {1, 2}},
        NumberCase{"counts anew", 1, 9, {1, 2}, {1, 2}},
        NumberCase{"over the end of 16 bits, without 0", 1, {}, {65534, 65535, 1, 2}, {1, 2, 3, 4}},
        NumberCase{"lost over the end", 1, {}, {65534, 3}, {1, 5}},
        NumberCase{"in the wrong order", 1, {}, {1, 3, 2, 4}, {1, 3, 2, 4}},
        NumberCase{"in the wrong order over the end", 1, 65000, {65534, 1, 65535, 2}, {1, 3, 2, 4}},
        NumberCase{"64 bits", 1, {}, {65535, 65536, 65537}, {1, 2, 3}},
        NumberCase{"64 bits and a long gap", 1, {}, {1, beyond16Bits}, {1, 0x1FFFF}},
        NumberCase{"USB", 0, {}, {0, 1, 3}, {0, 1, 3}},
        NumberCase{"USB counts on", 0, 700, {701, 702}, {0, 1}},
        NumberCase{"incomplete", 1, {}, {1, -2, 3}, {1, 2, 3}},
        NumberCase{"incomplete with a stale number", 1, {}, {7, 8, -6, 10}, {7, 8, untrusted, 10}},
        NumberCase{"stale at first", 1, {}, {-500, 2}, {untrusted, 2}}));

TEST(Calls, WaitForADeviceThatHangsOnlyOnceAndGoOnWhenItHasAnswered) {
    using namespace std::chrono_literals;
    orv::aravis::ThreadPark park;
    const auto device = DeviceThread::begin(park, 0ms);
    EXPECT_EQ(device->call([]() -> OrvErrorType { throw std::bad_alloc(); }, 10s),
              OrvErrorResources);

    const auto answer = std::make_shared<std::promise<void>>();
    const auto hang = [answer]() -> OrvErrorType {
        answer->get_future().wait();
        return OrvErrorSuccess;
    };
    EXPECT_EQ(device->call(hang, 10ms), OrvErrorTimeout);
    const auto succeed = []() -> OrvErrorType {
        return OrvErrorSuccess;
    };
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(device->call(succeed, 10s), OrvErrorTimeout);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 5s);
    answer->set_value();
    while (device->call(succeed, 10s) == OrvErrorTimeout)
        std::this_thread::yield();
    EXPECT_EQ(device->call(succeed, 10s), OrvErrorSuccess);
    device->quit();
    park.join(10s);
}

/// A camera that says to its first question that it needs \p milliseconds more, and answers 7 some
/// time later if it \p answers at all. How many more questions it got meanwhile.
int answerSlowly(std::uint32_t address, std::uint16_t milliseconds, bool answers,
                 std::promise<void>& isReady) {
    const platform::UdpSocket socket;
    EXPECT_TRUE(socket.bindTo(address, 3956));
    isReady.set_value();

    std::uint8_t question[64];
    sockaddr_in peer{};
    socklen_t size = sizeof peer;
    EXPECT_EQ(recvfrom(socket.handle(), question, sizeof question, 0,
                       reinterpret_cast<sockaddr*>(&peer), &size),
              12);
    const auto send = [&](std::vector<std::uint8_t> packet) {
        packet[7] = question[7];
        sendto(socket.handle(), packet.data(), packet.size(), 0,
               reinterpret_cast<const sockaddr*>(&peer), size);
    };
    send({0, 0, 0, 0x89, 0, 4, 0, 0, 0, 0, static_cast<std::uint8_t>(milliseconds >> 8U),
          static_cast<std::uint8_t>(milliseconds)});
    pollfd asked{socket.handle(), POLLIN, 0};
    const int questions = poll(&asked, 1, 300);
    if (answers)
        send({0, 0, 0, 0x81, 0, 4, 0, 0, 0, 0, 0, 7});
    return questions;
}

TEST(Gvcp, CameraThatNeedsLongerIsWaitedForButNotForEver) {
    using namespace std::chrono_literals;
    // No other process of this test has this address.
    const std::uint32_t address = 0x7F400000U + static_cast<std::uint32_t>(::getpid() & 0x3FFFFF);
    for (const bool answers : {true, false}) {
        std::promise<void> isReady;
        auto camera = std::async(std::launch::async, [&] {
            return answerSlowly(address, answers ? 5000 : 60'000, answers, isReady);
        });
        isReady.get_future().wait();
        const auto begun = std::chrono::steady_clock::now();
        const auto answer = Gvcp(address, 100ms, 3).readRegister(privilegeRegister);
        EXPECT_LT(std::chrono::steady_clock::now() - begun, 5s);
        EXPECT_EQ(camera.get(), 0) << "asked again";
        ASSERT_TRUE(answer) << "it lives";
        EXPECT_EQ(Gvcp::value(*answer), answers ? std::optional(7U) : std::nullopt);
    }
}

TEST(Access, IsWhatThePrivilegeRegisterLeaves) {
    constexpr unsigned all = OrvAccessModeFull | OrvAccessModeRead;
    const auto granted = [](std::uint16_t status, std::vector<std::uint8_t> data) {
        return static_cast<unsigned>(grantedBy({status, std::move(data)}));
    };
    EXPECT_EQ(granted(0, {0, 0, 0, 0}), all);
    EXPECT_EQ(granted(0, {0, 0, 0, 2}), OrvAccessModeRead);
    EXPECT_EQ(granted(0, {0, 0, 0, 6}), OrvAccessModeRead) << "control that may be taken over";
    EXPECT_EQ(granted(0, {0, 0, 0, 3}), OrvAccessModeNone);
    EXPECT_EQ(granted(0x8006, {}), OrvAccessModeNone) << "refused: somebody has it to himself";
    EXPECT_EQ(granted(0x8001, {}), all) << "not to be read: opening will show";
}

} // namespace
