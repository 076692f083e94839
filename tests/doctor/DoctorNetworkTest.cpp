// SPDX-License-Identifier: BSD-3-Clause
// Findings in a network appear, and disappear after their cures. Run by tools/congested-network
// with two adapters: host0 (10.77.0.1) towards camera1 and camera2, host1 (10.78.0.1) towards the
// others.
#include "gige/BootstrapRegisters.h"
#include "gige/Gvcp.h"
#include "tests/doctor/DoctorRun.h"
#include "tests/support/FakeCameraProcess.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

void run(const char* command) {
    ASSERT_EQ(std::system(command), 0) << command;
}

/// Each test begins and ends without a finding.
class DoctorNetwork : public testing::Test {
protected:
    void SetUp() override { ASSERT_THAT(titlesOf(examine()), IsEmpty()); }

    /// Exactly one, in the word's sense of \p title; its cure makes it disappear.
    static void expectOnly(const std::string& title) {
        const Cures cures = examine();
        ASSERT_THAT(titlesOf(cures), ElementsAre(title));
        apply(cures.begin()->second);
        EXPECT_THAT(titlesOf(examine()), IsEmpty());
    }

    static std::vector<std::string> options(int number) {
        return {"--adapter",     "eth" + std::to_string(number),
                "--mac",         std::to_string(number),
                "--packet-size", "8000",
                "--heartbeat",   "60000"};
    }

    const fakecamera::FakeCameraProcess first{"10.77.0.11", options(1), "camera1"};
    const fakecamera::FakeCameraProcess third{"10.78.0.13", options(3), "camera3"};
};

TEST_F(DoctorNetwork, hasPacketsThatTheAdapterDoesNotTake) {
    run("ip link set host0 mtu 1500");
    const Cures cures = examine();
    EXPECT_THAT(titlesOf(cures), ElementsAre("error packet-size host0", "hint mtu host0"));
    apply(cures.at("hint mtu host0"));
    EXPECT_THAT(titlesOf(examine()), IsEmpty());
}

TEST_F(DoctorNetwork, hasASwitchThatDropsLargePackets) {
    run("ip -n switch link set port1 mtu 1400");
    expectOnly("error path-mtu DEV_02FC00000001");
    run("ip -n switch link set port1 mtu 9000");
    EXPECT_THAT(titlesOf(examine()), ElementsAre("hint packet-size host0"));
}

TEST_F(DoctorNetwork, hasAFirewall) {
    // Lets in what comes from the port of commands, which answers do.
    run("ip rule add pref 3 lookup local && ip rule del pref 0");
    run("ip rule add pref 1 iif host0 ipproto udp sport 3956 lookup local");
    run("ip rule add pref 2 iif host0 ipproto udp blackhole");
    EXPECT_THAT(titlesOf(examine()), ElementsAre("warning firewall DEV_02FC00000001"));
    run("ip rule del pref 2");
    EXPECT_THAT(titlesOf(examine()), IsEmpty());
}

TEST_F(DoctorNetwork, hasAnAdapterThatSendsByAnother) {
    run("ip address del 10.77.0.1/24 dev host0");
    run("ip link add link host0 name lan0 type macvlan && ip link set lan0 up");
    run("ip address add 10.77.0.1/24 dev lan0");
    run("ip link set host0 mtu 1500");
    const Cures cures = examine();
    EXPECT_THAT(titlesOf(cures),
                ElementsAre("error packet-size lan0", "hint mtu host0", "hint mtu lan0"));
    apply(cures.at("hint mtu lan0"));
    EXPECT_THAT(titlesOf(examine()), IsEmpty());
    run("ip link del lan0 && ip address add 10.77.0.1/24 dev host0");
}

TEST_F(DoctorNetwork, hasTwoAdaptersInOneSubnet) {
    run("ip address add 10.77.0.2/24 dev host1");
    expectOnly("warning subnet-overlap host0 and host1");

    // Packets to a camera leave by the adapter whose route is older.
    const fakecamera::FakeCameraProcess fourth("10.77.0.14", options(4), "camera4");
    run("ip address add 10.77.0.2/24 dev host1");
    Cures cures = examine();
    EXPECT_EQ(cures.count("error subnet-overlap host0 and host1"), 1U) << titlesOf(cures).front();
    run("sysctl -qw net/ipv4/conf/host1/rp_filter=1");
    cures = examine();
    ASSERT_EQ(cures.count("warning reverse-path host1"), 1U);
    apply(cures["warning reverse-path host1"]);
    apply(cures["error subnet-overlap host0 and host1"]);
    expectOnly("error subnet DEV_02FC00000004");
}

TEST_F(DoctorNetwork, hasACameraInAnotherSubnet) {
    const fakecamera::FakeCameraProcess second("192.168.7.12", options(2), "camera2");
    expectOnly("error subnet DEV_02FC00000002");
}

TEST_F(DoctorNetwork, hasTwoCamerasWithOneAddress) {
    const fakecamera::FakeCameraProcess second("10.77.0.11", options(2), "camera2");
    const Cures cures = examine();
    ASSERT_THAT(titlesOf(cures), ElementsAre("error double-address DEV_02FC00000002"));
    apply(cures.begin()->second);
    // The kernel remembers for some seconds which camera had answered.
    apply("ip neigh flush dev host0");
    EXPECT_THAT(titlesOf(examine()), IsEmpty());
}

TEST_F(DoctorNetwork, hasACameraThatAnotherProgramControls) {
    gige::GvcpConnection program(0x0A4D000B, {std::chrono::milliseconds(500), 3});
    ASSERT_TRUE(program.writeRegister(gige::privilegeRegister, 2));
    const Cures cures = examine();
    ASSERT_THAT(titlesOf(cures), ElementsAre("error controller DEV_02FC00000001"));
    EXPECT_THAT(cures.begin()->second, HasSubstr("ss -Hunap 'sport = :"));
    ASSERT_TRUE(program.writeRegister(gige::privilegeRegister, 0));
    EXPECT_THAT(titlesOf(examine()), IsEmpty());
}

} // namespace
