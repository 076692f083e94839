// SPDX-License-Identifier: BSD-3-Clause
#include "losses/LossAnalysis.h"

#include <gmock/gmock.h>

namespace {

using platform::NetworkCount;
using ::testing::AllOf;
using ::testing::HasSubstr;

/// A camera that sent 100 frames of 200 packets, all of which came.
CameraEvidence camera(const char* id) {
    CameraEvidence it;
    it.id = id;
    it.framesReceived = 100;
    it.packetsReceived = 20'000;
    it.packetSize = 1400;
    it.usesRing = true;
    for (auto count :
         {&CameraEvidence::streamFramesLost, &CameraEvidence::gaps, &CameraEvidence::framesHollow,
          &CameraEvidence::framesWithoutBuffer, &CameraEvidence::packetsMissing,
          &CameraEvidence::packetsResent, &CameraEvidence::packetsLate,
          &CameraEvidence::packetsUnavailable, &CameraEvidence::packetsDropped})
        it.*count = 0;
    return it;
}

/// Two such cameras; no counter of a loss moved.
InterfaceEvidence twoCameras() {
    InterfaceEvidence it;
    it.name = "GEV eth0";
    it.cameras = {camera("A"), camera("B")};
    it.network.adapter = "eth0";
    for (std::size_t i = 0; i < static_cast<std::size_t>(NetworkCount::Count); ++i)
        it.network[static_cast<NetworkCount>(i)] = 0;
    for (const auto count :
         {NetworkCount::AdapterReceived, NetworkCount::IpReceived, NetworkCount::IpDelivered})
        it.network[count] = 40'000;
    it.surplus = 5;
    return it;
}

/// \p packets of A's frames never came, of ten frames.
void loseOfA(InterfaceEvidence& it, std::uint64_t packets) {
    it.cameras[0].framesIncomplete = 10;
    it.cameras[0].packetsMissing = packets;
}

/// The same, and they had reached the adapter.
void loseInHost(InterfaceEvidence& it, std::uint64_t packets) {
    loseOfA(it, packets);
    it.surplus = 5 + static_cast<std::int64_t>(packets);
    it.network[NetworkCount::AdapterReceived] = 40'000 + packets;
    it.network[NetworkCount::IpReceived] = 40'000 + packets;
    it.network[NetworkCount::IpDelivered] = 40'000 + packets;
}

/// A left out \p frames numbers, each alone.
void skipOfA(InterfaceEvidence& it, std::uint64_t frames) {
    it.cameras[0].framesLost = frames;
    it.cameras[0].streamFramesLost = frames;
    it.cameras[0].gaps = frames;
}

std::string verdict(const InterfaceEvidence& evidence) {
    std::string text;
    for (const LossFinding& finding : findLosses(evidence))
        text += (text.empty() ? "" : ", ") + (finding.camera.empty() ? "all" : finding.camera) +
                ' ' + nameOf(finding.place) + (finding.isRepaired ? "~" : "");
    return text;
}

struct Place {
    const char* what;
    const char* verdict;
    void (*lose)(InterfaceEvidence& it);
};

using Evidence = InterfaceEvidence;

const Place places[] = {
    {"nothing", "",
     [](Evidence&) {
     }},
    {"counters that other programs move", "",
     [](Evidence& it) {
         it.network[NetworkCount::AdapterDropped] = 9;
         it.network[NetworkCount::UdpBufferErrors] = 9;
         it.surplus = 3000;
     }},
    {"never reached the adapter", "A wire",
     [](Evidence& it) {
         loseOfA(it, 300);
     }},
    {"came again", "A wire~",
     [](Evidence& it) {
         it.cameras[0].packetsResent = 300;
     }},
    {"no frame came, since it waits for triggers", "A camera",
     [](Evidence& it) {
         it.cameras[0].framesReceived = 0;
         it.cameras[0].isTriggered = true;
     }},
    {"no frame came, and nothing tells why", "A unknown",
     [](Evidence& it) {
         it.cameras[0].framesReceived = 0;
         it.cameras[0].packetsReceived = 0;
     }},
    {"no frame came, as a firewall discards the packets", "all kernel",
     [](Evidence& it) {
         it.cameras[0].framesReceived = 0;
         it.cameras[0].packetsReceived = 0;
         it.cameras[0].usesRing = false;
         it.surplus = 20'000;
         it.network[NetworkCount::AdapterReceived] = 60'000;
         it.network[NetworkCount::IpReceived] = 60'000;
     }},
    {"delayed, not lost", "",
     [](Evidence& it) {
         it.cameras[0].packetsResent = 300;
         it.cameras[0].packetsDuplicate = 140;
         it.cameras[0].packetsLate = 10;
     }},
    {"came too late for its frame", "A unknown",
     [](Evidence& it) {
         loseOfA(it, 300);
         it.cameras[0].packetsLate = 300;
     }},
    {"and a few of another, within the error of the count", "A wire",
     [](Evidence& it) {
         loseOfA(it, 300);
         it.cameras[1].packetsResent = 3;
     }},
    {"and a few lost of another", "A wire, B unknown",
     [](Evidence& it) {
         loseOfA(it, 300);
         it.cameras[1].framesIncomplete = 1;
         it.cameras[1].packetsMissing = 3;
     }},
    {"beside few that others move", "A wire",
     [](Evidence& it) {
         loseOfA(it, 300);
         it.network[NetworkCount::AdapterDropped] = 29;
     }},
    {"other traffic may be them", "A unknown",
     [](Evidence& it) {
         loseInHost(it, 300);
     }},
    {"other traffic may be most of them", "A unknown",
     [](Evidence& it) {
         loseInHost(it, 300);
         it.surplus = 290;
     }},
    {"an adapter without counters", "A unknown",
     [](Evidence& it) {
         loseOfA(it, 300);
         it.network[NetworkCount::AdapterMissed].reset();
     }},
    {"what the adapter received is unknown", "A unknown",
     [](Evidence& it) {
         loseOfA(it, 300);
         it.surplus.reset();
     }},
    {"skipped", "A camera",
     [](Evidence& it) {
         skipOfA(it, 5);
     }},
    {"skipped, and a packet that came again", "A camera",
     [](Evidence& it) {
         skipOfA(it, 5);
         it.cameras[0].packetsResent = 1;
         it.surplus = 40;
     }},
    {"skipped, or cut off twice", "A wire",
     [](Evidence& it) {
         skipOfA(it, 2);
     }},
    {"whole frames and parts of others", "A wire",
     [](Evidence& it) {
         skipOfA(it, 5);
         loseOfA(it, 300);
     }},
    {"skipped, or the link was down", "A wire",
     [](Evidence& it) {
         skipOfA(it, 5);
         it.network[NetworkCount::AdapterCarrierChanges] = 2;
     }},
    {"skipped, and nothing known of the adapter", "A unknown",
     [](Evidence& it) {
         skipOfA(it, 5);
         it.network = {};
         it.surplus.reset();
     }},
    {"the adapter's ring", "all adapter",
     [](Evidence& it) {
         loseOfA(it, 300);
         it.network[NetworkCount::AdapterMissed] = 300;
         it.network[NetworkCount::AdapterFifoErrors] = 300;
     }},
    {"a cable that damages packets", "all adapter",
     [](Evidence& it) {
         loseOfA(it, 300);
         it.network[NetworkCount::AdapterChecksumErrors] = 290;
     }},
    {"adapter and wire", "all adapter, A wire",
     [](Evidence& it) {
         loseOfA(it, 300);
         it.network[NetworkCount::AdapterMissed] = 100;
     }},
    {"the ring, counted by each stream", "all kernel",
     [](Evidence& it) {
         loseInHost(it, 300);
         for (CameraEvidence& each : it.cameras)
             each.packetsDropped = 300;
     }},
    {"the ring, and every packet came again", "all kernel~",
     [](Evidence& it) {
         it.cameras[0].packetsResent = 300;
         it.cameras[0].packetsDropped = 300;
     }},
    {"the ring at the end, and no frame followed", "all kernel",
     [](Evidence& it) {
         it.cameras[0].packetsDropped = 300;
     }},
    {"ring and wire", "all kernel, A wire",
     [](Evidence& it) {
         loseInHost(it, 130);
         loseOfA(it, 300);
         for (CameraEvidence& each : it.cameras)
             each.packetsDropped = 130;
     }},
    {"the backlog", "all kernel",
     [](Evidence& it) {
         loseInHost(it, 300);
         it.network[NetworkCount::IpReceived] = 40'000;
         it.network[NetworkCount::BacklogDropped] = 300;
         it.network[NetworkCount::AdapterDropped] = 300;
     }},
    {"a rule before IP", "all kernel",
     [](Evidence& it) {
         loseInHost(it, 300);
         it.network[NetworkCount::IpReceived] = 40'000;
     }},
    {"joined segments of TCP are no rule", "A unknown",
     [](Evidence& it) {
         loseInHost(it, 300);
         it.network[NetworkCount::IpReceived] = 40'000;
         it.network[NetworkCount::TcpSegments] = 300;
     }},
    {"the socket", "A kernel",
     [](Evidence& it) {
         loseInHost(it, 300);
         it.cameras[0].usesRing = false;
         it.cameras[0].packetsDropped = 300;
     }},
    {"socket and wire", "A kernel, A wire",
     [](Evidence& it) {
         loseInHost(it, 100);
         loseOfA(it, 300);
         it.cameras[0].usesRing = false;
         it.cameras[0].packetsDropped = 100;
     }},
    {"the firewall", "all kernel",
     [](Evidence& it) {
         loseInHost(it, 300);
         it.cameras[0].usesRing = false;
         it.network[NetworkCount::IpDelivered] = 40'000;
     }},
    {"the ring is before the firewall", "A unknown",
     [](Evidence& it) {
         loseInHost(it, 300);
         it.network[NetworkCount::IpDelivered] = 40'000;
     }},
    {"faulty packets are no firewall", "A unknown",
     [](Evidence& it) {
         loseInHost(it, 300);
         it.cameras[0].usesRing = false;
         it.network[NetworkCount::IpDelivered] = 40'000;
         it.network[NetworkCount::IpFragments] = 400;
         it.network[NetworkCount::IpJoined] = 100;
     }},
    {"the reverse path", "all kernel",
     [](Evidence& it) {
         loseInHost(it, 300);
         it.cameras[0].usesRing = false;
         it.network[NetworkCount::IpDelivered] = 40'000;
         it.network[NetworkCount::ReversePathDropped] = 300;
     }},
    {"too large for the path", "A path",
     [](Evidence& it) {
         loseOfA(it, 1970);
         it.cameras[0].framesHollow = 10;
     }},
    {"a few frames lost all but their ends", "A wire",
     [](Evidence& it) {
         loseOfA(it, 500);
         it.cameras[0].framesHollow = 2;
     }},
    {"no buffer", "A program",
     [](Evidence& it) {
         it.cameras[0].framesLost = 3;
         it.cameras[0].framesWithoutBuffer = 3;
     }},
    {"lost, and no counter moved", "A unknown",
     [](Evidence& it) {
         it.cameras[0].framesLost = 3;
     }},
    {"a slow USB link", "A usb",
     [](Evidence& it) {
         it.cameras[0].framesLost = 3;
         it.cameras[0].isUsb = true;
         it.cameras[0].usbSpeed = 480'000'000;
     }},
    {"little memory for USB", "A usb",
     [](Evidence& it) {
         it.cameras[0].framesLost = 3;
         it.cameras[0].isUsb = true;
         it.cameras[0].usbSpeed = 5'000'000'000;
         it.usbMemory = 16;
         it.usbMemoryNeeded = 32;
     }},
    {"USB without a reason", "A unknown",
     [](Evidence& it) {
         it.cameras[0].framesLost = 3;
         it.cameras[0].isUsb = true;
         it.cameras[0].usbSpeed = 5'000'000'000;
         it.usbMemory = 1000;
         it.usbMemoryNeeded = 32;
     }},
    {"simulated cameras", "A unknown",
     [](Evidence& it) {
         loseOfA(it, 300);
         it.isSimulated = true;
     }},
};

TEST(LossAnalysis, namesThePlaceWhoseCounterMoved) {
    for (const Place& place : places) {
        InterfaceEvidence evidence = twoCameras();
        place.lose(evidence);
        EXPECT_EQ(verdict(evidence), place.verdict) << place.what;
    }
}

TEST(LossAnalysis, tellsTheNumbersAndTheCommand) {
    InterfaceEvidence evidence = twoCameras();
    loseInHost(evidence, 300);
    evidence.cameras[0].usesRing = false;
    evidence.cameras[0].packetsDropped = 200;
    evidence.cameras[0].receiveBuffer = 208;
    evidence.network[NetworkCount::AdapterMissed] = 100;
    const auto findings = findLosses(evidence);
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_THAT(findings[0].evidence, AllOf(HasSubstr("200 packets"), HasSubstr("of 208 KB")));
    EXPECT_THAT(findings[0].cure, HasSubstr("sysctl -w net.core.rmem_max="));
    EXPECT_THAT(findings[1].evidence, HasSubstr("rx_missed_errors +100."));
    EXPECT_THAT(findings[1].cure, HasSubstr("sudo ethtool -G eth0 rx"));
    InterfaceEvidence wire = twoCameras();
    loseOfA(wire, 300);
    EXPECT_THAT(findLosses(wire).at(0).cure, HasSubstr("2 cameras only this one"));
    wire.cameras[1] = wire.cameras[0];
    EXPECT_THAT(findLosses(wire).at(0).cure, HasSubstr("spanlet autoset --interface \"GEV eth0\""));
}

} // namespace
