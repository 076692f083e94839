// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/HostChecks.h"
#include "doctor/Quantities.h"
#include "platform/HostCommands.h"
#include "platform/UdpSocket.h"
#include "session/StreamingLimits.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace doctor {

namespace {

constexpr char thisHost[] = "this host";

std::string kilobytes(std::uint64_t bytes) {
    return std::to_string(bytes / 1024) + " KB";
}

void checkReceiveBuffer(const HostEvidence& evidence, Findings& findings) {
    if (evidence.cameras.gige == 0)
        return;
    const Number& granted = evidence.memory.receiveBufferBytes;
    const std::uint64_t wanted = platform::streamReceiveBuffer;
    if (evidence.memory.mayOpenPacketSockets)
        return;
    const std::string text =
        granted ? kilobytes(*granted) + " of " + kilobytes(wanted) + " (net.core.rmem_max)" : "";
    if (!granted)
        findings.push_back({Severity::Unknown, "receive-buffer", thisHost,
                            "The largest receive buffer cannot be read.", "", ""});
    else if (session::receiveBufferWarning(evidence.cameras, evidence.memory))
        findings.push_back({Severity::Warning, "receive-buffer", thisHost,
                            "The receive buffer of a stream's UDP socket is too small for a busy "
                            "moment.",
                            text, platform::receiveBufferCommand(wanted)});
    else
        findings.push_back({Severity::Ok, "receive-buffer", thisHost,
                            "Streams of GigE cameras have enough memory.", text, ""});
}

void checkPacketRing(const HostEvidence& evidence, Findings& findings) {
    if (evidence.cameras.gige == 0)
        return;
    if (evidence.memory.mayOpenPacketSockets)
        findings.push_back({Severity::Ok, "packet-ring", thisHost,
                            "GigE cameras are received by the packet ring.",
                            "CAP_NET_RAW (/proc/self/status)", ""});
    else
        findings.push_back({Severity::Hint, "packet-ring", thisHost,
                            "GigE cameras are received by UDP sockets. The packet ring takes less "
                            "processor time and loses fewer packets.",
                            "no CAP_NET_RAW (/proc/self/status)",
                            platform::packetSocketCommand(evidence.program)});
}

void checkUsbMemory(const HostEvidence& evidence, Findings& findings) {
    // The camera SDK shows only those that may be opened.
    RealCameras cameras = evidence.cameras;
    cameras.usb = std::max(cameras.usb, evidence.usbCameras.size());
    if (cameras.usb == 0)
        return;
    const Number& granted = evidence.memory.usbMegabytes;
    const std::uint64_t needed = session::usbMegabytesFor(cameras.usb);
    const std::string text = granted ? std::to_string(*granted) + " MB, needed " +
                                           std::to_string(needed) + " MB (/" +
                                           platform::usbMemoryFile + ")"
                                     : "";
    if (!granted)
        findings.push_back({Severity::Unknown, "usb-memory", thisHost,
                            "The memory for USB transfers cannot be read.", "", ""});
    else if (session::usbMemoryWarning(cameras, evidence.memory))
        findings.push_back({Severity::Warning, "usb-memory", thisHost,
                            "The memory for USB transfers is too small for the USB cameras.", text,
                            platform::usbMemoryCommand(needed)});
    else
        findings.push_back({Severity::Ok, "usb-memory", thisHost,
                            "The USB cameras have enough memory.", text, ""});
}

void checkUsbPermissions(const HostEvidence& evidence, Findings& findings) {
    for (const session::UsbCameraAccess& camera : evidence.usbCameras) {
        if (camera.mayBeOpened)
            findings.push_back({Severity::Ok, "usb-permission", camera.name,
                                "This user may open the camera.", camera.file, ""});
        else
            findings.push_back({Severity::Error, "usb-permission", camera.name,
                                "This user has no permission to open the camera.",
                                camera.file + " is not writable",
                                platform::usbPermissionCommand()});
    }
}

/// Whether the check of the bandwidth has compared the limits of all USB cameras with the speed of
/// their controllers.
bool areUsbLimitsKnown(const HostEvidence& evidence) {
    std::size_t known = 0;
    for (const LinkEvidence& link : evidence.links)
        for (const StreamingCamera& camera : link.cameras)
            known += link.isUsb && link.speed != 0 && camera.limit ? 1 : 0;
    return known >= evidence.usbCameras.size();
}

void checkUsbControllers(const HostEvidence& evidence, Findings& findings) {
    std::map<std::string, std::vector<std::string>> controllers;
    for (const session::Usb3VisionCamera& camera : evidence.usbCameras)
        controllers[camera.controller].push_back(camera.name);
    for (const auto& [controller, cameras] : controllers) {
        if (controller.empty())
            continue;
        const std::string text = listText(cameras) + " (/sys/bus/usb/devices)";
        const std::string subject = "USB controller " + controller;
        if (cameras.size() == 1)
            findings.push_back({Severity::Ok, "usb-controller", subject,
                                "The camera has a USB controller of its own.", text, ""});
        else if (areUsbLimitsKnown(evidence))
            findings.push_back({Severity::Ok, "usb-controller", subject,
                                "Cameras share the USB controller. What they may send together is "
                                "compared with its speed (bandwidth).",
                                text, ""});
        else
            findings.push_back({Severity::Hint, "usb-controller", subject,
                                "Cameras share the USB controller and its bandwidth, and not all "
                                "have a limit that is known. Limit what they send, or plug some of "
                                "them into ports of another controller.",
                                text, ""});
    }
}

void checkFrequencies(const HostEvidence& evidence, Findings& findings) {
    if (evidence.frequencies.empty())
        findings.push_back({Severity::Unknown, "governor", thisHost,
                            "The kernel tells no frequency governor of the processors.", "", ""});
    for (const platform::FrequencyControl& control : evidence.frequencies) {
        const std::string text = control.governor + " by " + control.driver + " on " +
                                 std::to_string(control.processors) +
                                 " processors (/sys/devices/system/cpu/cpu*/cpufreq)";
        if (control.isSlowest())
            findings.push_back({Severity::Hint, "governor", thisHost,
                                "Processors keep their lowest frequency whatever they have to do.",
                                text, platform::performanceGovernorCommand()});
        else
            findings.push_back({Severity::Ok, "governor", thisHost,
                                "The processors' frequency follows the load, or is high.", text,
                                ""});
    }
}

} // namespace

void checkComputer(const HostEvidence& evidence, Findings& findings) {
    checkReceiveBuffer(evidence, findings);
    checkPacketRing(evidence, findings);
    checkUsbMemory(evidence, findings);
    checkUsbPermissions(evidence, findings);
    checkUsbControllers(evidence, findings);
    checkFrequencies(evidence, findings);
}

} // namespace doctor
