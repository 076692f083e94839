// SPDX-License-Identifier: BSD-3-Clause
// Findings in a network appear, and disappear after their cures. Run by tools/congested-network
// with two adapters: host0 (10.77.0.1) towards camera1 and camera2, host1 (10.78.0.1) towards the
// others.
#include "gige/BootstrapRegisters.h"
#include "gige/Gvcp.h"
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FakeCameraProcess.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// What the program finds: "severity check subject" to the cure.
using Cures = std::map<std::string, std::string>;

/// The exit code must tell whether there is an error.
Cures examine() {
    SpanletProcess spanlet;
    const int code = spanlet.run("doctor --json --cameras genicam");
    EXPECT_EQ(spanlet.err(), "");
    Cures cures;
    bool hasError = false;
    for (const QJsonValue& finding : spanlet.json()[QStringLiteral("findings")].toArray()) {
        const auto text = [&](const char* key) {
            return finding[QLatin1String(key)].toString().toStdString();
        };
        hasError = hasError || text("severity") == "error";
        cures[text("severity") + ' ' + text("check") + ' ' + text("subject")] = text("cure");
    }
    EXPECT_EQ(code, hasError ? 1 : 0);
    return cures;
}

std::vector<std::string> titlesOf(const Cures& cures) {
    std::vector<std::string> titles;
    for (const auto& [title, cure] : cures)
        titles.push_back(title);
    return titles;
}

/// Runs a cure as it is typed; this user is root of the network.
void apply(std::string cure) {
    ASSERT_NE(cure, "");
    for (std::size_t at = 0; (at = cure.find("sudo ", at)) != std::string::npos;)
        cure.erase(at, 5);
    const std::string folder = std::filesystem::path(SPANLET_FILE).parent_path().string();
    cure = "PATH=" + folder + ":$PATH SPANLET_CAMERAS=genicam; export PATH SPANLET_CAMERAS; " +
           cure + " > /dev/null";
    EXPECT_EQ(std::system(cure.c_str()), 0) << cure;
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
    ASSERT_EQ(std::system("ip link set host0 mtu 1500"), 0);
    const Cures cures = examine();
    EXPECT_THAT(titlesOf(cures), ElementsAre("error packet-size host0", "hint mtu host0"));
    apply(cures.at("hint mtu host0"));
    EXPECT_THAT(titlesOf(examine()), IsEmpty());
}

TEST_F(DoctorNetwork, hasTwoAdaptersInOneSubnet) {
    ASSERT_EQ(std::system("ip address add 10.77.0.2/24 dev host1"), 0);
    expectOnly("warning subnet-overlap host0 and host1");

    // Packets to a camera leave by the adapter whose route is older.
    const fakecamera::FakeCameraProcess fourth("10.77.0.14", options(4), "camera4");
    ASSERT_EQ(std::system("ip address add 10.77.0.2/24 dev host1"), 0);
    Cures cures = examine();
    EXPECT_EQ(cures.count("error subnet-overlap host0 and host1"), 1U) << titlesOf(cures).front();
    ASSERT_EQ(std::system("sysctl -qw net/ipv4/conf/host1/rp_filter=1"), 0);
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
