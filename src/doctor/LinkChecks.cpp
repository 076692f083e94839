// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/CameraAdapters.h"
#include "doctor/HostChecks.h"
#include "doctor/Quantities.h"
#include "engine/SafetyMargins.h"
#include "platform/HostCommands.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace doctor {

namespace {

/// USB 3 begins at this speed, in bits per second.
constexpr std::uint64_t usb3Speed = 5'000'000'000;
/// The largest packet of Ethernet without jumbo frames, in bytes.
constexpr std::uint64_t usualPacket = 1500;

/// The interfaces of a link get equal parts of what others leave of it.
std::string autoSetCommand(const LinkEvidence& link) {
    const double left = usableBytesPerSecond(link.speed, 0) - link.otherTraffic;
    const bool isWhole = link.interfaces.size() == 1 && link.otherTraffic <= 0;
    char share[48] = "";
    if (!isWhole)
        std::snprintf(share, sizeof share, " --max-bandwidth %.1f",
                      left / 1e6 / static_cast<double>(link.interfaces.size()));
    std::string command;
    if (left <= 0)
        return command;
    for (const std::string& interface : link.interfaces)
        command += (command.empty() ? "" : " && ") + std::string("spanlet autoset --interface ") +
                   platform::shellWord(interface) + share;
    return command;
}

void checkBandwidth(const LinkEvidence& link, Findings& findings) {
    const std::string subject = listText(link.interfaces);
    double limits = link.otherTraffic;
    std::size_t known = 0;
    for (const StreamingCamera& camera : link.cameras) {
        limits += static_cast<double>(camera.limit.value_or(0));
        known += camera.limit ? 1 : 0;
    }
    std::string evidence = "limits " + rateText(limits) + " (" + std::to_string(known) + " of " +
                           std::to_string(link.cameras.size()) + " cameras)";
    if (link.otherTraffic > 0)
        evidence += " with " + rateText(link.otherTraffic) + " by others";
    if (link.speed == 0) {
        findings.push_back({Severity::Unknown, "bandwidth", subject,
                            "The speed of the link is not known.", evidence, ""});
        return;
    }
    const int margin =
        (link.isUsb ? recommendedMarginsUsb : recommendedMarginsGigE).interfacePercent;
    const double usable = usableBytesPerSecond(link.speed, margin);
    const double all = usableBytesPerSecond(link.speed, 0);
    evidence += "; link " + speedText(link.speed) + " = " + rateText(all) + ", less " +
                std::to_string(margin) + " % " + rateText(usable);
    if (limits > usable * divisionTolerance)
        findings.push_back({limits > all ? Severity::Warning : Severity::Hint, "bandwidth", subject,
                            limits > all
                                ? "The cameras may send more than the link carries."
                                : "The cameras may send nearly as much as the link carries: "
                                  "little is left for packets that are sent again.",
                            evidence, autoSetCommand(link)});
    else if (known < link.cameras.size())
        findings.push_back({Severity::Unknown, "bandwidth", subject,
                            "Not all cameras have a limit that can be read.", evidence, ""});
    else
        findings.push_back({Severity::Ok, "bandwidth", subject,
                            "The link carries what the cameras may send.", evidence, ""});
}

/// The cameras of a link by what their packets are for its adapter.
struct PacketSizes {
    std::vector<std::string> tooLarge;
    std::vector<std::string> small;
    std::size_t known = 0;
};

/// Whether test packets have shown that the camera, or something on its way, is why they are small.
bool needsSmallPackets(const HostEvidence& host, const std::string& id) {
    return std::any_of(host.networkCameras.begin(), host.networkCameras.end(),
                       [&](const NetworkCamera& camera) {
                           return camera.id == id && camera.path.largestArrived != 0 &&
                                  camera.path.largestArrived < 2 * usualPacket;
                       });
}

PacketSizes judgePackets(const HostEvidence& host, const LinkEvidence& link) {
    PacketSizes sizes;
    for (const StreamingCamera& camera : link.cameras) {
        if (!camera.packetSize || !link.mtu)
            continue;
        ++sizes.known;
        const std::string text = camera.id + " " + std::to_string(*camera.packetSize) + " bytes";
        if (*camera.packetSize > *link.mtu)
            sizes.tooLarge.push_back(text);
        else if (*camera.packetSize <= usualPacket && *link.mtu >= 2 * usualPacket &&
                 !needsSmallPackets(host, camera.id))
            sizes.small.push_back(text);
    }
    return sizes;
}

void checkPackets(const HostEvidence& host, const LinkEvidence& link, Findings& findings) {
    const std::string subject = listText(link.interfaces);
    const PacketSizes sizes = judgePackets(host, link);
    const auto evidence = [&](const std::vector<std::string>& cameras) {
        return listText(cameras) + " (GVSPPacketSize); MTU " +
               (link.mtu ? std::to_string(*link.mtu) : "unknown");
    };
    std::string negotiation;
    for (const std::string& interface : link.interfaces)
        negotiation += (negotiation.empty() ? "" : " && ") +
                       std::string("spanlet benchmark --seconds 1 --adjust-packet-size "
                                   "--interface ") +
                       platform::shellWord(interface);
    if (!sizes.tooLarge.empty())
        findings.push_back({Severity::Error, "packet-size", subject,
                            "Packets of cameras are larger than the adapter takes: no frame "
                            "comes.",
                            evidence(sizes.tooLarge), negotiation});
    if (!sizes.small.empty())
        findings.push_back({Severity::Hint, "packet-size", subject,
                            "The cameras send small packets, although the adapter takes large "
                            "ones, which cost less processor time.",
                            evidence(sizes.small), negotiation});
    if (sizes.known == 0)
        findings.push_back({Severity::Unknown, "packet-size", subject,
                            "Packet sizes or the adapter's MTU are not known.", "", ""});
    else if (sizes.tooLarge.empty() && sizes.small.empty())
        findings.push_back({Severity::Ok, "packet-size", subject,
                            "The adapter takes the cameras' packets.",
                            "MTU " + std::to_string(*link.mtu), ""});
}

void addUsbSpeed(const std::string& camera, std::uint64_t speed, const std::string& source,
                 Findings& findings) {
    const std::string evidence = speedText(speed) + " (" + source + ")";
    if (speed == 0)
        findings.push_back({Severity::Unknown, "usb-speed", camera,
                            "The speed of the camera's link is not known.", "", ""});
    else if (speed < usb3Speed)
        findings.push_back({Severity::Warning, "usb-speed", camera,
                            "The camera runs at USB 2 speed. Plug it into a USB 3 port, with a "
                            "USB 3 cable and without a USB 2 hub between.",
                            evidence, ""});
    else
        findings.push_back(
            {Severity::Ok, "usb-speed", camera, "The camera runs at USB 3 speed.", evidence, ""});
}

void checkUsbSpeeds(const HostEvidence& host, Findings& findings) {
    // The system also tells the speed of cameras that cannot be opened.
    for (const session::Usb3VisionCamera& camera : host.usbCameras)
        addUsbSpeed(camera.name, static_cast<std::uint64_t>(camera.linkSpeed),
                    camera.file + " in /sys/bus/usb/devices", findings);
    if (!host.usbCameras.empty())
        return;
    for (const LinkEvidence& link : host.links)
        for (const StreamingCamera& camera : link.cameras)
            if (link.isUsb)
                addUsbSpeed(camera.id, camera.usbSpeed.value_or(0), "DeviceConnectionSpeed",
                            findings);
}

} // namespace

void checkLinks(const HostEvidence& host, Findings& findings) {
    for (const LinkEvidence& link : host.links) {
        if (std::none_of(link.cameras.begin(), link.cameras.end(),
                         [](const StreamingCamera& camera) { return camera.isOpened; }))
            continue;
        checkBandwidth(link, findings);
        const AdapterEvidence* const adapter = findAdapter(host, link.adapter);
        if (!link.isUsb && (adapter == nullptr || !adapter->isLoopback))
            checkPackets(host, link, findings);
    }
    checkUsbSpeeds(host, findings);
    if (host.links.empty() && host.networkCameras.empty() && host.usbCameras.empty())
        findings.push_back({Severity::Hint, "cameras", "this host",
                            "No camera was found. Check power and cables, and that a firewall "
                            "lets UDP packets from port 3956 in.",
                            "", ""});
}

} // namespace doctor
