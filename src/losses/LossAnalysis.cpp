// SPDX-License-Identifier: BSD-3-Clause
#include "losses/LossAnalysis.h"

#include "losses/LossText.h"
#include "losses/SharedLosses.h"
#include "platform/HostCommands.h"

#include <algorithm>
#include <utility>

namespace {

using platform::NetworkCount;

/// A network that drops single packets at random hardly ever drops all of a frame of so many, and
/// not one of another frame; an interruption may do so once.
constexpr std::uint64_t fewestPackets = 8;
constexpr std::uint64_t fewestGaps = 3;
/// An interruption cuts two frames on average by half: fewer than one in so many packets of a frame
/// are missing beside each gap that a camera makes.
constexpr std::uint64_t gapShare = 10;
/// Part of the missing packets that may stay unexplained beside places that were named.
constexpr std::uint64_t restShare = 4;
/// Bytes that hold the packets of a quarter of a second at 1 Gbit/s.
constexpr std::uint64_t largeReceiveBuffer = 32 << 20;
/// USB 3 begins at this speed, in bits per second.
constexpr std::uint64_t usb3Speed = 5'000'000'000;

std::string frameNumberCount(std::uint64_t number) {
    return lossText(number == 1 ? Losses::tr("%1 frame number") : Losses::tr("%1 frame numbers"),
                    {std::to_string(number)});
}

std::string placeCount(std::uint64_t number) {
    return lossText(number == 1 ? Losses::tr("%1 place") : Losses::tr("%1 places"),
                    {std::to_string(number)});
}

/// A word of a command line.
std::string quoted(const std::string& name) {
    return name.find(' ') == std::string::npos ? name : '"' + name + '"';
}

/// Number of packets of a frame; 0 where it is not known.
std::uint64_t packetsPerFrame(const CameraEvidence& camera) {
    if (camera.framesReceived == 0)
        return 0;
    return (camera.packetsReceived.value_or(0) + camera.packetsMissing.value_or(0)) /
           camera.framesReceived;
}

/// Missing packets that came after their frame had been given up: these are not lost.
std::uint64_t packetsDelayed(const CameraEvidence& camera) {
    return std::min(camera.packetsLate.value_or(0), camera.packetsMissing.value_or(0));
}

/// Packets that were lost and came again. A requested packet that was only delayed comes twice, the
/// second time perhaps after its frame: where half of them did, all count as delayed.
std::uint64_t packetsRepaired(const CameraEvidence& camera) {
    const std::uint64_t twice = camera.packetsDuplicate.value_or(0) +
                                camera.packetsLate.value_or(0) - packetsDelayed(camera);
    const std::uint64_t resent = camera.packetsResent.value_or(0);
    return 2 * twice >= resent ? 0 : resent - twice;
}

/// Packets that did not come when they were sent first, of frames of which others did.
std::uint64_t packetsAstray(const CameraEvidence& camera) {
    return camera.packetsMissing.value_or(0) - packetsDelayed(camera) + packetsRepaired(camera);
}

bool hasBroughtAll(const CameraEvidence& camera) {
    return framesBad(camera) == 0 && !isSilent(camera);
}

/// A camera, and how many of its packets are to be explained.
struct Case {
    const CameraEvidence& camera;
    std::uint64_t missing = 0;
    bool isExplained = false;
};

/// Collects the findings of one interface.
class Analysis {
public:
    explicit Analysis(const InterfaceEvidence& evidence);
    std::vector<LossFinding> run();

private:
    void add(LossPlace place, const CameraEvidence& camera, std::string text, std::string cure);
    void judgeSilence(Case& each);
    void judgeProgram(Case& each);
    void judgePath(Case& each);
    void judgeSocket(Case& each);
    void judgeCamera(Case& each);
    void judgeUsb(Case& each);
    void judgeRing();
    void judgeShared();
    void judgeRest();
    void judgeUnexplained();
    void addWire(const Case& each);
    std::string wireCure() const;
    void addUnknown(const Case& each);
    std::uint64_t missing() const;
    bool mayBeSkipped(const CameraEvidence& camera) const;
    std::string unknownText(const CameraEvidence& camera) const;

    const InterfaceEvidence& m_evidence;
    std::vector<Case> m_cases;
    std::vector<LossFinding> m_findings;
    /// Missing packets that places of the interface account for.
    std::uint64_t m_explained = 0;
    std::uint64_t m_droppedBySockets = 0;
    bool m_isShared = false;
};

Analysis::Analysis(const InterfaceEvidence& evidence) : m_evidence(evidence) {
    for (const CameraEvidence& camera : evidence.cameras) {
        const std::uint64_t ofLostFrames =
            camera.streamFramesLost.value_or(0) * packetsPerFrame(camera);
        m_cases.push_back({camera, packetsAstray(camera) + ofLostFrames});
    }
}

void Analysis::add(LossPlace place, const CameraEvidence& camera, std::string text,
                   std::string cure) {
    m_findings.push_back(
        {place, camera.id, std::move(text), std::move(cure), hasBroughtAll(camera)});
}

std::uint64_t Analysis::missing() const {
    std::uint64_t sum = 0;
    for (const Case& each : m_cases)
        sum += each.missing;
    return sum;
}

/// Packets that the adapter received and no stream may be those of a camera without any.
void Analysis::judgeSilence(Case& each) {
    if (!isSilent(each.camera))
        return;
    if (each.camera.isTriggered) {
        add(LossPlace::Camera, each.camera,
            lossText(Losses::tr("No frame came: the camera waits for triggers.")),
            lossText(Losses::tr("Trigger it, or let it run freely: spanlet set %1 TriggerMode Off"),
                     {quoted(each.camera.id)}));
        each.isExplained = true;
    } else if (each.camera.packetsReceived == 0U) {
        each.missing =
            static_cast<std::uint64_t>(std::max<std::int64_t>(m_evidence.surplus.value_or(0), 0));
    }
}

void Analysis::judgeProgram(Case& each) {
    const std::uint64_t underruns = each.camera.framesWithoutBuffer.value_or(0);
    if (underruns == 0)
        return;
    add(LossPlace::Program, each.camera,
        lossText(
            Losses::tr("%1 came while this program had no free buffer (StreamUnderrunFrameCount)."),
            {frameCount(underruns)}),
        lossText(Losses::tr("Use more buffers, or return them sooner.")));
    each.isExplained = underruns >= framesBad(each.camera);
}

void Analysis::judgePath(Case& each) {
    const CameraEvidence& camera = each.camera;
    const std::uint64_t hollow = camera.framesHollow.value_or(0);
    if (hollow == 0 || 2 * hollow < camera.framesIncomplete ||
        camera.packetsDropped.value_or(0) > 0)
        return;
    const std::string adapter = m_evidence.network.adapter;
    const std::string size = camera.packetSize ? lossText(Losses::tr(" of %1 bytes"),
                                                          {std::to_string(*camera.packetSize)})
                                               : "";
    const std::string mtu =
        m_evidence.mtu ? lossText(Losses::tr(" The adapter takes packets of up to %1 bytes."),
                                  {std::to_string(*m_evidence.mtu)})
                       : "";
    add(LossPlace::Path, camera,
        lossText(Losses::tr("Of %1 the short first and last packets came, and none of the full "
                            "ones%2 (StreamHollowFrameCount).%3"),
                 {frameCount(hollow), size, mtu}),
        lossText(Losses::tr("Let the camera find the size that passes: spanlet benchmark "
                            "--interface %1 --adjust-packet-size. Or permit larger packets (jumbo "
                            "frames) in the switch and the adapter%2"),
                 {quoted(m_evidence.name),
                  adapter.empty() ? "." : ": " + platform::mtuCommand(adapter)}));
    each.missing -= std::min(each.missing, hollow * packetsPerFrame(camera));
    each.isExplained = true;
}

void Analysis::judgeSocket(Case& each) {
    const CameraEvidence& camera = each.camera;
    const std::uint64_t dropped = camera.packetsDropped.value_or(0);
    if (camera.usesRing.value_or(true) || dropped == 0)
        return;
    const std::string buffer =
        camera.receiveBuffer
            ? lossText(Losses::tr(" of %1 KB"), {std::to_string(*camera.receiveBuffer)})
            : "";
    add(LossPlace::Kernel, camera,
        lossText(Losses::tr("The operating system dropped %1 as the receive buffer%2 of the UDP "
                            "socket was full (GevStreamDroppedPacketCount)."),
                 {packetCount(dropped), buffer}),
        lossText(Losses::tr("Permit a larger buffer: %1. Or receive by the packet ring: %2"),
                 {platform::receiveBufferCommand(largeReceiveBuffer),
                  platform::packetSocketCommand(m_evidence.program)}));
    each.missing -= std::min(each.missing, dropped);
    each.isExplained = each.missing <= dropped / restShare;
    if (each.isExplained)
        each.missing = 0;
    m_droppedBySockets += dropped;
}

/// Whether whole frames are missing and hardly a packet of others.
bool Analysis::mayBeSkipped(const CameraEvidence& camera) const {
    return camera.gaps.value_or(0) >= fewestGaps && packetsPerFrame(camera) >= fewestPackets &&
           camera.packetsMissing && camera.packetsResent &&
           packetsAstray(camera) * gapShare < *camera.gaps * packetsPerFrame(camera);
}

void Analysis::judgeCamera(Case& each) {
    const CameraEvidence& camera = each.camera;
    const std::uint64_t skipped = camera.streamFramesLost.value_or(0);
    if (skipped == 0 || !mayBeSkipped(camera))
        return;
    const std::uint64_t wouldBe = skipped * packetsPerFrame(camera);
    const auto wentDown = m_evidence.network[NetworkCount::AdapterCarrierChanges];
    const bool isExcluded = m_evidence.surplus && unreadCounters(m_evidence.network).empty() &&
                            sharedLosses(m_evidence, wouldBe).empty() && wentDown == 0U &&
                            *m_evidence.surplus < static_cast<std::int64_t>(wouldBe / 2);
    if (!isExcluded)
        return;
    add(LossPlace::Camera, camera,
        lossText(Losses::tr("The camera left out %1 in %2: none of about %3 reached the adapter, "
                            "while of the other %4 %5 went astray."),
                 {frameNumberCount(skipped), placeCount(*camera.gaps), packetCount(wouldBe),
                  frameCount(camera.framesReceived), packetCount(packetsAstray(camera))}),
        lossText(
            Losses::tr("Lower the camera's frame rate or raise its bandwidth limit, so that it "
                       "can send every frame: spanlet autoset --interface %1"),
            {quoted(m_evidence.name)}));
    each.missing = packetsAstray(camera);
    each.isExplained = true;
}

void Analysis::judgeUsb(Case& each) {
    const CameraEvidence& camera = each.camera;
    if (!camera.isUsb || framesBad(camera) == 0 || each.isExplained)
        return;
    const std::string all = frameCount(camera.framesReceived + camera.framesLost);
    const std::string bad = std::to_string(framesBad(camera));
    if (camera.usbSpeed > 0 && camera.usbSpeed < usb3Speed) {
        add(LossPlace::UsbLink, camera,
            lossText(Losses::tr("Of %1, %2 did not come whole; the camera's link has %3 Mbit/s, "
                                "less than USB 3."),
                     {all, bad, std::to_string(camera.usbSpeed / 1'000'000)}),
            lossText(Losses::tr("Use a USB 3 port and cable.")));
        each.isExplained = true;
    } else if (m_evidence.usbMemory.value_or(0) > 0 &&
               *m_evidence.usbMemory < m_evidence.usbMemoryNeeded) {
        add(LossPlace::UsbLink, camera,
            lossText(Losses::tr("Of %1, %2 did not come whole; the system allows %3 MB of USB "
                                "memory, and the cameras need %4 MB."),
                     {all, bad, std::to_string(*m_evidence.usbMemory),
                      std::to_string(m_evidence.usbMemoryNeeded)}),
            platform::usbMemoryCommand(m_evidence.usbMemoryNeeded));
        each.isExplained = true;
    }
}

/// The ring's count is one of the adapter: each stream tells the same.
void Analysis::judgeRing() {
    std::uint64_t dropped = 0;
    for (const Case& each : m_cases)
        if (each.camera.usesRing.value_or(false))
            dropped = std::max(dropped, each.camera.packetsDropped.value_or(0));
    if (dropped == 0)
        return;
    m_findings.push_back(
        {LossPlace::Kernel, "",
         lossText(Losses::tr("The packet ring of the adapter was full for %1 "
                             "(GevStreamDroppedPacketCount): this program did not get the "
                             "processor in time."),
                  {packetCount(dropped)}),
         lossText(Losses::tr("End other programs, or give this one more of the processor: sudo "
                             "renice -n -10 -p $(pidof %1)"),
                  {m_evidence.program.filename().string()}),
         // Frames that were dropped whole are noticed by later ones only.
         isAllRepaired(m_evidence) && dropped <= missing()});
    m_explained += dropped;
    m_isShared = true;
}

void Analysis::judgeShared() {
    for (SharedLoss& loss : sharedLosses(m_evidence, missing())) {
        m_findings.push_back(std::move(loss.finding));
        m_explained += loss.packets;
        m_isShared = true;
    }
}

void Analysis::addWire(const Case& each) {
    const CameraEvidence& camera = each.camera;
    const auto received = m_evidence.network[NetworkCount::AdapterReceived].value_or(0);
    const std::uint64_t unavailable = camera.packetsUnavailable.value_or(0);
    std::string text = lossText(
        m_isShared ? Losses::tr("About %1 never reached the adapter %2: it received %3 in all.")
                   : Losses::tr("About %1 never reached the adapter %2: it received %3 in all, and "
                                "its error counters did not move."),
        {packetCount(each.missing), m_evidence.network.adapter, packetCount(received)});
    if (const std::uint64_t repaired = packetsRepaired(camera); repaired > 0)
        text += lossText(Losses::tr(" %1 came when requested again."), {packetCount(repaired)});
    if (unavailable > 0)
        text += lossText(Losses::tr(" The camera no longer had %1 of those requested."),
                         {packetCount(unavailable)});
    add(LossPlace::Wire, camera, text, wireCure());
}

/// Where it is most worth to look, by how many of the cameras lose packets.
std::string Analysis::wireCure() const {
    const auto losing = std::count_if(m_cases.begin(), m_cases.end(),
                                      [](const Case& each) { return each.missing > 0; });
    const std::string divide = "spanlet autoset --interface " + quoted(m_evidence.name);
    if (losing > 1)
        return lossText(Losses::tr("%1 of %2 cameras lose packets: they may send more than their "
                                   "link carries. Divide it: %3"),
                        {std::to_string(losing), std::to_string(m_cases.size()), divide});
    if (m_cases.size() > 1)
        return lossText(
            Losses::tr("Of %1 cameras only this one loses packets: change its cable and "
                       "its port of the switch."),
            {std::to_string(m_cases.size())});
    return lossText(Losses::tr("Change the camera's cable and its port of the switch. If a link on "
                               "the way is slower than the camera, lower its limit: %1"),
                    {divide});
}

void Analysis::judgeRest() {
    const std::uint64_t all = missing();
    const std::uint64_t rest = all - std::min(all, m_explained);
    if (rest == 0 || rest <= all / restShare)
        return;
    // What the sockets dropped had reached the adapter, and is no longer among the missing packets.
    const std::int64_t reached = std::max<std::int64_t>(
        m_evidence.surplus.value_or(0) - static_cast<std::int64_t>(m_droppedBySockets), 0);
    const std::int64_t never = static_cast<std::int64_t>(all) - reached;
    const bool isWire = m_evidence.surplus && unreadCounters(m_evidence.network).empty() &&
                        never > 0 && never >= static_cast<std::int64_t>(rest / 2);
    for (Case& each : m_cases) {
        if (each.missing == 0)
            continue;
        // The adapter counts for all cameras: few packets of one are within the count's error.
        if (isWire && static_cast<std::int64_t>(each.missing) > reached)
            addWire(each);
        else if (!each.isExplained && (!hasBroughtAll(each.camera) || isAllRepaired(m_evidence)))
            addUnknown(each);
        each.isExplained = true;
    }
}

std::string Analysis::unknownText(const CameraEvidence& camera) const {
    std::string text = isSilent(camera) ? lossText(Losses::tr("No frame came"))
                       : framesBad(camera) == 0
                           ? lossText(Losses::tr("No frame was lost"))
                           : lossText(Losses::tr("Of %1, %2 were lost and %3 came incomplete"),
                                      {frameCount(camera.framesReceived + camera.framesLost),
                                       std::to_string(camera.framesLost),
                                       std::to_string(camera.framesIncomplete)});
    if (m_evidence.isSimulated)
        return text + lossText(Losses::tr("; simulated cameras have no counters of a network."));
    if (camera.isUsb)
        return text + lossText(Losses::tr("; USB has no counter that tells the place."));
    if (!camera.packetsMissing)
        return text + lossText(Losses::tr("; the stream does not count its packets."));
    text += lossText(Losses::tr("; %1 went astray"), {packetCount(packetsAstray(camera))});
    if (const std::uint64_t late = camera.packetsLate.value_or(0); late > 0)
        text += lossText(Losses::tr(" and %1 came too late, as the camera or this host paused"),
                         {packetCount(late)});
    if (packetsAstray(camera) == 0)
        return text + '.';
    const std::string unread = unreadCounters(m_evidence.network);
    if (!unread.empty())
        return text + lossText(Losses::tr(". These counters could not be read: %1."), {unread});
    if (!m_evidence.surplus)
        return text + lossText(Losses::tr(". The packets that the adapter received could not be "
                                          "counted."));
    return text + lossText(Losses::tr(". The adapter received %1 more packets than the streams, so "
                                      "the counters do not tell whether the packets reached it."),
                           {std::to_string(*m_evidence.surplus)});
}

void Analysis::addUnknown(const Case& each) {
    add(LossPlace::Unknown, each.camera, unknownText(each.camera), "");
}

/// Cameras that lost frames or brought none, and for which no place was named.
void Analysis::judgeUnexplained() {
    for (const Case& each : m_cases)
        if (!hasBroughtAll(each.camera) && !each.isExplained && !m_isShared)
            addUnknown(each);
}

std::vector<LossFinding> Analysis::run() {
    for (Case& each : m_cases) {
        judgeSilence(each);
        judgeProgram(each);
        if (m_evidence.isSimulated)
            continue;
        judgePath(each);
        judgeSocket(each);
        judgeCamera(each);
        judgeUsb(each);
    }
    if (!m_evidence.isSimulated) {
        judgeRing();
        judgeShared();
        judgeRest();
    }
    judgeUnexplained();
    return std::move(m_findings);
}

} // namespace

std::uint64_t framesBad(const CameraEvidence& camera) {
    return camera.framesLost + camera.framesIncomplete;
}

bool isSilent(const CameraEvidence& camera) {
    return camera.framesReceived == 0 && camera.framesLost == 0;
}

const char* nameOf(LossPlace place) {
    switch (place) {
    case LossPlace::Camera:
        return "camera";
    case LossPlace::Wire:
        return "wire";
    case LossPlace::Adapter:
        return "adapter";
    case LossPlace::Kernel:
        return "kernel";
    case LossPlace::Path:
        return "path";
    case LossPlace::Program:
        return "program";
    case LossPlace::UsbLink:
        return "usb";
    case LossPlace::Unknown:
        break;
    }
    return "unknown";
}

std::vector<LossFinding> findLosses(const InterfaceEvidence& evidence) {
    return Analysis(evidence).run();
}
