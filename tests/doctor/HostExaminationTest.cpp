// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/HostExamination.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using namespace doctor;
using platform::NetworkCount;
using testing::HasSubstr;

constexpr std::uint32_t mask24 = 0xFFFFFF00;
constexpr std::uint64_t gigabit = 1'000'000'000;

AdapterEvidence adapter(const char* name, std::uint32_t address) {
    AdapterEvidence it;
    it.name = name;
    it.subnets = {{address, mask24}};
    it.mtu = 9000;
    it.speed = gigabit;
    it.link = platform::LinkSettings{gigabit, platform::Duplex::Full, true, gigabit};
    it.ring = platform::ReceiveRing{4096, 4096};
    it.coalescing = platform::InterruptCoalescing{0, 0, true};
    it.reversePathFilter = 0;
    it.counters[NetworkCount::AdapterMissed] = 0;
    return it;
}

NetworkCamera networkCamera(const char* id, std::uint64_t mac, std::uint32_t address) {
    return {id, mac, address, mask24, "eth0", "eth0", true, {}, {"", 8000, 9000, true}};
}

StreamingCamera streamingCamera(const char* id) {
    return {id, true, "", 40'000'000, 8000, {}};
}

/// A host with a GigE camera on each of two adapters and two USB cameras, where all is as it should
/// be.
HostEvidence healthyHost() {
    HostEvidence it;
    it.links.resize(2);
    it.links[0] = {{"GEV 0"}, false, gigabit, 9000, "eth0", 0, {streamingCamera("A")}};
    it.links[1] = {{"USB 0"}, true, 5 * gigabit, {}, "", 0, {streamingCamera("U")}};
    it.adapters = {adapter("eth0", 0x0A4D0001), adapter("eth1", 0x0A4E0001)};
    it.networkCameras = {networkCamera("A", 1, 0x0A4D000B)};
    it.usbCameras = {{{"Maker U", "/dev/bus/usb/002/007", 5'000'000'000, "0-20-0"}, true}};
    it.cameras = {1, 1, true};
    it.memory = {64, 32 << 20, true};
    it.reversePathDropped = 0;
    it.frequencies = {{"intel_pstate", "powersave", 8}};
    it.program = "/usr/bin/spanlet";
    return it;
}

/// What one fault of the healthy host is found as: "severity check subject", with its cure.
struct Fault {
    const char* finding;
    /// Parts of the evidence or text, and of the cure.
    const char* evidence;
    const char* cure;
    void (*spoil)(HostEvidence& it);
};

void PrintTo(const Fault& fault, std::ostream* stream) {
    *stream << fault.finding;
}

std::string titleOf(const Finding& finding) {
    return std::string(nameOf(finding.severity)) + ' ' + finding.check + ' ' + finding.subject;
}

std::vector<std::string> titlesOf(const Findings& findings, Severity least = Severity::Hint) {
    std::vector<std::string> titles;
    for (const Finding& finding : findings)
        if (finding.severity <= least)
            titles.push_back(titleOf(finding));
    return titles;
}

class EachFault : public testing::TestWithParam<Fault> {};

TEST_P(EachFault, isTheOnlyFinding) {
    HostEvidence host = healthyHost();
    EXPECT_EQ(titlesOf(examine(host), Severity::Unknown), std::vector<std::string>());
    GetParam().spoil(host);
    const Findings findings = examine(host);
    EXPECT_EQ(titlesOf(findings), std::vector<std::string>{GetParam().finding});
    EXPECT_THAT(findings[0].evidence + findings[0].text, HasSubstr(GetParam().evidence));
    EXPECT_THAT(findings[0].cure, HasSubstr(GetParam().cure));
    EXPECT_EQ(findings[0].cure.empty(), std::string(GetParam().cure).empty());
}

const Fault linkFaults[] = {
    {"warning bandwidth GEV 0", "limits 125.1 MB/s (1 of 1 cameras); link 1 Gbit/s = 125.0 MB/s",
     "spanlet autoset --interface 'GEV 0'",
     [](HostEvidence& it) {
         it.links[0].cameras[0].limit = 125'100'000;
     }},
    {"hint bandwidth GEV 0", "less 10 % 112.5 MB/s", "spanlet autoset",
     [](HostEvidence& it) {
         it.links[0].cameras[0].limit = 113'100'000;
     }},
    {"warning bandwidth USB 0 and USB 1", "(2 of 2 cameras)",
     "--interface 'USB 0' --max-bandwidth 312.5 && spanlet autoset --interface 'USB 1' --max",
     [](HostEvidence& it) {
         it.links[1].interfaces.emplace_back("USB 1");
         it.links[1].cameras.push_back(it.links[1].cameras[0]);
         it.links[1].cameras[0].limit = 600'000'000;
     }},
    {"warning bandwidth GEV 0", "with 90.0 MB/s by others", "--max-bandwidth 35.0",
     [](HostEvidence& it) {
         it.links[0].otherTraffic = 90e6;
     }},
    {"error packet-size GEV 0", "A 9001 bytes (GVSPPacketSize); MTU 9000", "--adjust-packet-size",
     [](HostEvidence& it) {
         it.links[0].cameras[0].packetSize = 9001;
     }},
    {"hint packet-size GEV 0", "A 1500 bytes", "--adjust-packet-size",
     [](HostEvidence& it) {
         it.links[0].cameras[0].packetSize = 1500;
     }},
    {"warning usb-speed Maker U", "480 Mbit/s (/dev/bus/usb/002/007", "",
     [](HostEvidence& it) {
         it.usbCameras[0].linkSpeed = 480'000'000;
     }},
    {"error open U", "by another application", "",
     [](HostEvidence& it) {
         it.links[1].cameras[0] = {"U", false, "by another application", {}, {}, {}};
     }},
};

const Fault adapterFaults[] = {
    {"hint mtu eth0", "MTU 1500 (/sys/class/net/eth0/mtu), link 1 Gbit/s",
     "sudo ip link set dev eth0 mtu 9000",
     [](HostEvidence& it) {
         it.adapters[0].mtu = 1500;
         it.links[0].mtu = 1500;
         it.links[0].cameras[0].packetSize = 1500;
         it.networkCameras[0].path.largestArrived = 1500;
     }},
    {"hint ring eth1", "rx 256", "ethtool -G eth1",
     [](HostEvidence& it) {
         it.adapters[0].lowerAdapters = {"eth1"};
         it.adapters[0].ring->packets = 64;
         it.adapters[1].ring->packets = 256;
     }},
    {"hint ring eth0", "rx 256 of 4096 (ethtool -g eth0), rx_missed_errors 0",
     "sudo ethtool -G eth0 rx 4096",
     [](HostEvidence& it) {
         it.adapters[0].ring->packets = 256;
     }},
    {"warning coalescing eth0", "rx-usecs 0, rx-frames 0, adaptive-rx off (ethtool -c eth0)",
     "sudo ethtool -C eth0 rx-usecs 50",
     [](HostEvidence& it) {
         it.adapters[0].coalescing->isAdaptive = false;
     }},
    {"warning link-speed eth0", "100 Mbit/s of 1 Gbit/s, negotiation on (ethtool eth0)",
     "sudo ethtool -s eth0 autoneg on",
     [](HostEvidence& it) {
         it.adapters[0].link->speed = 100'000'000;
     }},
    {"error duplex eth0", "Half", "sudo ethtool -s eth0 autoneg on",
     [](HostEvidence& it) {
         it.adapters[0].link->duplex = platform::Duplex::Half;
     }},
    {"warning reverse-path eth0", "rp_filter 1 (/proc/sys/net/ipv4/conf, of all and eth0)",
     "net/ipv4/conf/eth0/rp_filter=0",
     [](HostEvidence& it) {
         it.adapters[0].reversePathFilter = 1;
         it.reversePathDropped = 3;
     }},
    {"hint reverse-path eth0", "then not found", "rp_filter=0",
     [](HostEvidence& it) {
         it.adapters[0].reversePathFilter = 1;
         it.memory.mayOpenPacketSockets = false;
         it.cameras.gige = 0;
     }},
    {"hint error-counters eth0", "rx_crc_errors 7 (/sys/class/net/eth0/statistics)", "",
     [](HostEvidence& it) {
         it.adapters[0].counters[NetworkCount::AdapterChecksumErrors] = 7;
     }},
    {"hint error-counters eth0", "rx_missed_errors 9", "",
     [](HostEvidence& it) {
         it.adapters[0].counters[NetworkCount::AdapterMissed] = 9;
     }},
};

const Fault addressFaults[] = {
    {"error subnet A", "camera 192.168.7.11/24 (discovery), adapter eth0 10.77.0.1/24",
     "spanlet set-ip 00:00:00:00:00:01 10.77.0.11",
     [](HostEvidence& it) {
         it.networkCameras[0].address = 0xC0A8070B;
         it.networkCameras[0].isReachable = false;
     }},
    {"error subnet A", "169.254.9.1", "spanlet set-ip 00:00:00:00:00:01 10.77.0.3",
     [](HostEvidence& it) {
         // The digits .1 and .2 are taken.
         it.networkCameras.push_back(networkCamera("B", 2, 0x0A4D0002));
         it.networkCameras[0].address = 0xA9FE0901;
         it.networkCameras[0].isReachable = false;
     }},
    {"error double-address B", "10.77.0.11 on eth0, and of A on eth0",
     "spanlet set-ip 00:00:00:00:00:02 10.77.0.2",
     [](HostEvidence& it) {
         it.networkCameras.push_back(networkCamera("B", 2, 0x0A4D000B));
         // One answered for the other, which this program could not open.
         it.networkCameras[1].controller = CameraController{0x0A4D0001, 41234};
         it.links[0].cameras[0].isOpened = false;
     }},
    {"error double-address A", "10.77.0.1 on eth0, and of this host", "set-ip",
     [](HostEvidence& it) {
         it.networkCameras[0].address = 0x0A4D0001;
     }},
    {"error controller A", "on this host: end it", "sudo ss -Hunap 'sport = :41234'",
     [](HostEvidence& it) {
         it.links[0].cameras[0].isOpened = false;
         it.networkCameras[0].controller = CameraController{0x0A4D0001, 41234};
     }},
    {"error controller A", "on another computer", "",
     [](HostEvidence& it) {
         it.links[0].cameras[0].isOpened = false;
         it.networkCameras[0].controller = CameraController{0x0A4D0063, 41234};
     }},
    {"warning subnet-overlap eth0 and eth1", "eth0 10.77.0.1/24, eth1 10.77.0.2/24",
     "del 10.77.0.2/24 dev eth1 && sudo ip address add 192.168.10.1/24 dev eth1",
     [](HostEvidence& it) {
         it.adapters[1].subnets[0].address = 0x0A4D0002;
     }},
    {"warning subnet-overlap eth0 and eth1", "", "sudo ip address del 10.77.0.2/16 dev eth1",
     [](HostEvidence& it) {
         it.adapters[1].subnets.push_back({0x0A4D0002, 0xFFFF0000});
     }},
    {"hint subnet-overlap eth1 and eth2", "", "dev eth2",
     [](HostEvidence& it) {
         it.adapters.push_back(adapter("eth2", 0x0A4E0002));
     }},
};

const Fault pathFaults[] = {
    {"error path-mtu A", "8000 bytes, largest test packet that arrived: 1504 bytes",
     "spanlet set A GevSCPSPacketSize 1504",
     [](HostEvidence& it) {
         it.networkCameras[0].path.largestArrived = 1504;
     }},
    {"warning path-mtu A", "set to 8000", "spanlet set A GevSCPSPacketSize 8000",
     [](HostEvidence& it) {
         it.networkCameras[0].path.isRestored = false;
     }},
    {"warning firewall A", "test packets of all sizes", "nft list",
     [](HostEvidence& it) {
         it.networkCameras[0].path.largestArrived = 0;
     }},
};

const Fault computerFaults[] = {
    {"warning usb-memory this host", "8 MB, needed 16 MB", "echo 16 | sudo tee",
     [](HostEvidence& it) {
         it.memory.usbMegabytes = 8;
         it.cameras.usb = 0;
     }},
    {"error usb-permission Maker U", "/dev/bus/usb/002/007 is not writable", "udevadm trigger",
     [](HostEvidence& it) {
         it.usbCameras[0].mayBeOpened = false;
     }},
    {"hint packet-ring this host", "no CAP_NET_RAW", "setcap cap_net_raw+ep /usr/bin/spanlet",
     [](HostEvidence& it) {
         it.memory.mayOpenPacketSockets = false;
     }},
    {"hint governor this host", "powersave by acpi-cpufreq on 4 processors", "echo performance",
     [](HostEvidence& it) {
         it.frequencies.push_back({"acpi-cpufreq", "powersave", 4});
     }},
};

std::string faultName(const testing::TestParamInfo<Fault>& fault) {
    std::string name = fault.param.finding + std::string(" ") + std::to_string(fault.index);
    name.erase(std::remove_if(name.begin(), name.end(),
                              [](unsigned char letter) { return !std::isalnum(letter); }),
               name.end());
    return name;
}

INSTANTIATE_TEST_SUITE_P(OfLinks, EachFault, testing::ValuesIn(linkFaults), faultName);
INSTANTIATE_TEST_SUITE_P(OfAdapters, EachFault, testing::ValuesIn(adapterFaults), faultName);
INSTANTIATE_TEST_SUITE_P(OfAddresses, EachFault, testing::ValuesIn(addressFaults), faultName);
INSTANTIATE_TEST_SUITE_P(OfPaths, EachFault, testing::ValuesIn(pathFaults), faultName);
INSTANTIATE_TEST_SUITE_P(OfTheComputer, EachFault, testing::ValuesIn(computerFaults), faultName);

TEST(HostExamination, ordersFindingsAndJudgesFaultsTogether) {
    HostEvidence host = healthyHost();
    host.memory = {64, 212'992, false};
    host.adapters[0].ring->packets = 256;
    host.adapters[0].counters[NetworkCount::AdapterMissed] = 5;
    // On both adapters of one subnet, and by the wrong one.
    host.adapters[1].subnets[0].address = 0x0A4D0002;
    host.adapters[0].reversePathFilter = 1;
    host.networkCameras[0].isReachable = false;
    host.networkCameras[0].routeAdapter = "eth1";
    EXPECT_EQ(
        titlesOf(examine(host)),
        (std::vector<std::string>{"error subnet-overlap eth0 and eth1", "warning ring eth0",
                                  "warning reverse-path eth0", "warning receive-buffer this host",
                                  "hint error-counters eth0", "hint packet-ring this host"}));
}

TEST(HostExamination, saysWhatIsNotKnown) {
    HostEvidence host = healthyHost();
    AdapterEvidence unknown;
    unknown.name = "eth0";
    unknown.subnets = host.adapters[0].subnets;
    host.adapters[0] = unknown;
    host.links[0].speed = 0;
    host.links[0].mtu.reset();
    host.links[1].cameras[0].limit.reset();
    host.memory.usbMegabytes.reset();
    host.usbCameras[0].linkSpeed = 0;
    host.frequencies.clear();
    // A camera that nobody can ask, and a virtual adapter.
    host.networkCameras[0] = networkCamera("A", 1, 0x0A4E000B);
    host.networkCameras[0].adapter = "eth1";
    host.networkCameras[0].isReachable = false;
    host.networkCameras[0].routeAdapter = "";
    host.networkCameras[0].path.untested = "The camera does not answer.";
    host.adapters[1].coalescing->isAdaptive = false;
    host.adapters[1].mayCoalesce = false;
    EXPECT_THAT(titlesOf(examine(host), Severity::Unknown),
                testing::UnorderedElementsAre(
                    "unknown bandwidth GEV 0", "unknown packet-size GEV 0",
                    "unknown bandwidth USB 0", "unknown usb-speed Maker U", "unknown mtu eth0",
                    "unknown ring eth0", "unknown coalescing eth0", "unknown link-speed eth0",
                    "unknown duplex eth0", "unknown reverse-path eth0",
                    "unknown error-counters eth0", "unknown usb-memory this host",
                    "unknown governor this host", "unknown firewall this host",
                    "unknown controller A", "unknown path-mtu A", "unknown coalescing eth1"));
}

TEST(HostExamination, checksOnlyCamerasWhereTheHostWasNotRead) {
    HostEvidence host = healthyHost();
    host.unread = "The cameras are simulated.";
    host.adapters[0].link->duplex = platform::Duplex::Half;
    host.usbCameras.clear();
    host.links[1].cameras[0].usbSpeed = 480'000'000;
    EXPECT_EQ(titlesOf(examine(host), Severity::Unknown),
              (std::vector<std::string>{"warning usb-speed U", "unknown host this host"}));
    EXPECT_EQ(titlesOf(examine({})), std::vector<std::string>{"hint cameras this host"});
}

TEST(HostExamination, leavesOutWhatNoCameraUses) {
    HostEvidence host = healthyHost();
    host.adapters[1].mtu = 1500;
    host.adapters[1].ring->packets = 64;
    // One that two adapters hear has its subnet on one of them.
    host.networkCameras.push_back(host.networkCameras[0]);
    host.networkCameras[1].adapter = "eth2";
    host.networkCameras[1].isReachable = false;
    // A switch on the way takes no larger packets.
    host.links[0].cameras[0].packetSize = 1500;
    host.networkCameras[0].path = {"", 1500, 1504, true};
    // That this program has opened.
    host.networkCameras[0].controller = CameraController{0x0A4D0001, 41234};
    // Fake cameras on an adapter without a cable.
    host.adapters.push_back(adapter("lo", 0x7F000001));
    host.adapters[2].isLoopback = true;
    host.adapters[2].mtu = 65'536;
    host.adapters[2].coalescing->isAdaptive = false;
    host.links.push_back({{"lo"}, false, gigabit, 65'536, "lo", 0, {streamingCamera("F")}});
    host.links[2].cameras[0].packetSize = 1400;
    EXPECT_EQ(titlesOf(examine(host)), std::vector<std::string>());
}

} // namespace
