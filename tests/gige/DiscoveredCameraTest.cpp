// SPDX-License-Identifier: BSD-3-Clause
#include "gige/DiscoveredCamera.h"
#include "gige/ForceIp.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using namespace gige;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t header = 8;

void put(Bytes& packet, std::size_t at, const Bytes& bytes) {
    std::copy(bytes.begin(), bytes.end(), packet.begin() + static_cast<std::ptrdiff_t>(at));
}

/// The answer of a camera whose texts fill their registers, without an end.
Bytes answerWithFullTexts() {
    Bytes packet(header + 248);
    put(packet, 0, {0, 0, 0, 3, 0, 248, 0, 1});
    put(packet, header + 0x0A, {2, 0xFC, 1, 2, 3, 4});
    put(packet, header + 0x13, {5});
    put(packet, header + 0x17, {6});
    put(packet, header + 0x24, {192, 168, 5, 2});
    put(packet, header + 0x34, {255, 255, 0, 0});
    put(packet, header + 0x44, {192, 168, 0, 1});
    put(packet, header + 0x48, Bytes(32, 'v'));
    put(packet, header + 0x68, Bytes(32, 'm'));
    put(packet, header + 0xD8, Bytes(16, 's'));
    put(packet, header + 0xE8, Bytes(16, 'u'));
    return packet;
}

TEST(DiscoveredCamera, hasWhatItsAnswerSays) {
    const Bytes packet = answerWithFullTexts();
    const auto camera = parseDiscovery(packet.data(), packet.size(), 1);
    ASSERT_TRUE(camera);
    EXPECT_EQ(camera->macAddress, 0x02FC01020304U);
    EXPECT_EQ(camera->address, 0xC0A80502U);
    EXPECT_EQ(camera->mask, 0xFFFF0000U);
    EXPECT_EQ(camera->gateway, 0xC0A80001U);
    EXPECT_EQ(camera->vendor, std::string(32, 'v'));
    EXPECT_EQ(camera->model, std::string(32, 'm'));
    EXPECT_EQ(camera->serialNumber, std::string(16, 's'));
    EXPECT_EQ(camera->userName, std::string(16, 'u'));
    const auto bits = [](const IpConfiguration& each) {
        return (each.persistent ? 1 : 0) + (each.dhcp ? 2 : 0) + (each.linkLocal ? 4 : 0);
    };
    EXPECT_EQ(bits(camera->supported), 5);
    EXPECT_EQ(bits(camera->current), 6);
}

TEST(DiscoveredCamera, isOnlyReadFromAWholeAnswerToTheRequest) {
    const Bytes good = answerWithFullTexts();
    for (std::size_t size = 0; size < good.size(); ++size) {
        const Bytes cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FALSE(parseDiscovery(cut.data(), cut.size(), 1)) << size;
    }
    Bytes longer = good;
    longer.push_back(0);
    EXPECT_FALSE(parseDiscovery(longer.data(), longer.size(), 1));
    const std::pair<std::size_t, const char*> wrong[] = {
        {0, "status"}, {3, "kind of packet"}, {5, "length"}, {7, "request"}};
    for (const auto& [at, what] : wrong) {
        Bytes packet = good;
        packet[at] ^= 0x80U;
        EXPECT_FALSE(parseDiscovery(packet.data(), packet.size(), 1)) << what;
    }
}

TEST(ForceIp, hasItsFieldsWhereTheProtocolPutsThem) {
    Bytes expected(56);
    put(expected, 2, {2, 0xFC, 1, 2, 3, 4});
    put(expected, 20, {10, 0, 0, 7});
    put(expected, 36, {255, 255, 255, 0});
    put(expected, 52, {10, 0, 0, 1});
    EXPECT_EQ(forceIpData(0x02FC01020304, {0x0A000007, 0xFFFFFF00, 0x0A000001}), expected);
}

} // namespace
