// SPDX-License-Identifier: BSD-3-Clause
#include "platform/HostCommands.h"

#include "platform/UdpSocket.h"
#include "tests/support/FileTree.h"

#include <gmock/gmock.h>
#include <iterator>
#include <regex>

namespace {

/// The page's text with one blank between words.
std::string realCamerasPage() {
    std::ifstream file(REAL_CAMERAS_PAGE);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return std::regex_replace(text, std::regex("\\s+"), " ");
}

TEST(HostCommands, areThoseOfTheDocumentation) {
    const std::string page = realCamerasPage();
    for (const std::string& command :
         {platform::usbMemoryCommand(64),
          platform::receiveBufferCommand(platform::streamReceiveBuffer),
          platform::packetSocketCommand("build/release/bin/spanlet"),
          platform::usbPermissionCommand()})
        EXPECT_THAT(page, testing::HasSubstr("sh " + command + " ```"));
}

TEST(HostCommands, quoteWhatAShellWouldTakeApart) {
    EXPECT_EQ(platform::packetSocketCommand("/opt/Peter's cameras/spanlet"),
              "sudo setcap cap_net_raw+ep '/opt/Peter'\\''s cameras/spanlet'");
}

TEST(PacketSockets, arePermittedByTheEffectiveCapability) {
    const std::pair<const char*, bool> cases[] = {
        {"Name:\tspanlet\nCapPrm:\t0000003fffffffff\nCapEff:\t0000000000000000\n", false},
        {"CapEff:\t0000000000002000\n", true},
        {"CapEff:\tffffffffffffdfff\n", false},
        {"CapBnd:\t000001ffffffffff\n", false}};
    for (const auto& [status, may] : cases) {
        const FileTree files;
        files.write("proc/self/status", status);
        EXPECT_EQ(platform::mayOpenPacketSockets(files.root()), may) << status;
    }
    EXPECT_FALSE(platform::mayOpenPacketSockets(FileTree().root() / "none"));
}

} // namespace
