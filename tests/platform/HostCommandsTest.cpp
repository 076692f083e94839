// SPDX-License-Identifier: BSD-3-Clause
#include "platform/HostCommands.h"

#include "platform/UdpSocket.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>
#include <iterator>
#include <regex>

namespace {

TEST(HostCommands, areThoseOfTheDocumentationAndOfThePackages) {
    std::ifstream file(REAL_CAMERAS_PAGE);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::string page = std::regex_replace(text, std::regex("\\s+"), " ");
    for (const std::string& command :
         {platform::usbMemoryCommand(64),
          platform::receiveBufferCommand(platform::streamReceiveBuffer),
          platform::packetSocketCommand("build/release/bin/spanlet"),
          platform::usbPermissionCommand(), platform::mtuCommand("enp3s0")})
        EXPECT_THAT(page, testing::HasSubstr("sh " + command + " ```"));
    std::ifstream rules(USB_RULES_FILE);
    std::string rule;
    while (std::getline(rules, rule) && rule.front() == '#')
        ;
    EXPECT_THAT(platform::usbPermissionCommand(), testing::HasSubstr('\'' + rule + '\''));
    EXPECT_EQ(platform::packetSocketCommand("/opt/Peter's cameras/spanlet"),
              "sudo setcap cap_net_raw+ep '/opt/Peter'\\''s cameras/spanlet'");
}

TEST(PacketSockets, arePermittedByTheEffectiveCapability) {
    const FileTree files;
    for (const std::string capabilities : {"0000000000002000", "ffffffffffffdfff"}) {
        files.write("proc/self/status", "CapPrm:\tffffffffffffffff\nCapEff:\t" + capabilities);
        EXPECT_EQ(platform::mayOpenPacketSockets(files.root()), capabilities[0] == '0');
    }
    EXPECT_FALSE(platform::mayOpenPacketSockets(files.root() / "none"));
}

} // namespace
