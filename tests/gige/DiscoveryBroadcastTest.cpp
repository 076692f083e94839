// SPDX-License-Identifier: BSD-3-Clause
#include "gige/DiscoveryBroadcast.h"
#include "gige/BootstrapRegisters.h"
#include "gige/Gvcp.h"
#include "gige/PersistentIp.h"
#include "tests/support/FakeCameraProcess.h"

#include <gmock/gmock.h>

#include <chrono>

namespace {

using namespace gige;
using namespace std::chrono_literals;
using fakecamera::FakeCameraProcess;

TEST(DiscoverCameras, findsTwinsAndCamerasOfOtherSubnetsOnce) {
    const FakeCameraProcess one("127.0.0.2", {"--serial", "S1", "--user-id", "left"});
    // Of another subnet by its own mask, so it answers by broadcast.
    const FakeCameraProcess twin("127.0.1.2", {"--serial", "S1"});
    const auto cameras = discoverCameras(400ms);
    ASSERT_EQ(cameras.size(), 2U);
    EXPECT_EQ(cameras[0].address, 0x7F000002U);
    EXPECT_EQ(cameras[0].userName, "left");
    EXPECT_EQ(cameras[0].adapter, "lo");
    EXPECT_EQ(cameras[1].address, 0x7F000102U);
}

/// The persistent settings in the registers of a camera: address, mask, gateway, ways that are on.
std::vector<std::uint32_t> settingsOf(std::uint32_t address) {
    std::vector<std::uint32_t> values;
    for (const std::uint32_t each : {persistentAddressRegister, persistentMaskRegister,
                                     persistentGatewayRegister, ipConfigurationRegister}) {
        const auto answer = Gvcp(address, 1000ms, 3).readRegister(each);
        values.push_back(answer ? Gvcp::value(*answer).value_or(0) : 0);
    }
    return values;
}

TEST(PersistentIp, isWrittenUnlessAnotherProgramControlsTheCamera) {
    const FakeCameraProcess camera("127.0.0.2");
    constexpr std::uint32_t address = 0x7F000002;
    const IpSettings settings{0x7F000007, 0xFF000000, 0x7F000001};
    {
        GvcpConnection other(address, {1000ms, 3});
        const auto answer = other.writeRegister(privilegeRegister, 2);
        ASSERT_TRUE(answer && answer->status == 0);
        EXPECT_EQ(writePersistentIp(address, settings), PersistentResult::Controlled);
        EXPECT_EQ(settingsOf(address)[0], 0U);
        other.writeRegister(privilegeRegister, 0);
    }
    EXPECT_EQ(writePersistentIp(address, settings), PersistentResult::Written);
    EXPECT_THAT(settingsOf(address),
                testing::ElementsAre(settings.address, settings.mask, settings.gateway, 5));
    EXPECT_EQ(writePersistentIp(address, settings), PersistentResult::Written)
        << "the camera is free again";
    EXPECT_EQ(writePersistentIp(address + 1, settings), PersistentResult::NoAnswer);
}

} // namespace
