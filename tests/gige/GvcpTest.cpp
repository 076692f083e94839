// SPDX-License-Identifier: BSD-3-Clause
#include "gige/Gvcp.h"
#include "gige/BootstrapRegisters.h"
#include "platform/UdpSocket.h"

#include <gmock/gmock.h>

#include <chrono>
#include <future>
#include <optional>
#include <utility>
#include <vector>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using namespace gige;

/// A camera that answers the first request with a pending acknowledge of \p milliseconds and, if it
/// \p answers, with 7 after 300 ms. Returns 1 when another request came meanwhile, else 0.
int answerSlowly(std::uint32_t address, std::uint16_t milliseconds, bool answers,
                 std::promise<void>& isReady) {
    const platform::UdpSocket socket;
    EXPECT_TRUE(socket.bindTo(address, 3956));
    isReady.set_value();

    std::uint8_t question[64];
    sockaddr_in peer{};
    socklen_t size = sizeof peer;
    auto* const sender = reinterpret_cast<sockaddr*>(&peer);
    EXPECT_EQ(recvfrom(socket.handle(), question, sizeof question, 0, sender, &size), 12);
    const auto send = [&](std::vector<std::uint8_t> packet) {
        packet[7] = question[7];
        sendto(socket.handle(), packet.data(), packet.size(), 0, sender, size);
    };
    send({0, 0, 0, 0x89, 0, 4, 0, 0, 0, 0, static_cast<std::uint8_t>(milliseconds >> 8U),
          static_cast<std::uint8_t>(milliseconds)});
    pollfd asked{socket.handle(), POLLIN, 0};
    const int questions = poll(&asked, 1, 300);
    if (answers)
        send({0, 0, 0, 0x81, 0, 4, 0, 0, 0, 0, 0, 7});
    return questions;
}

TEST(Gvcp, waitsLongerForABusyCameraButNotForEver) {
    using namespace std::chrono_literals;
    // Unique to this process.
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

} // namespace
