// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/CameraAdapters.h"
#include "doctor/HostChecks.h"
#include "doctor/Quantities.h"

#include <algorithm>
#include <string>
#include <vector>

namespace doctor {

namespace {

constexpr char check[] = "path-mtu";

/// Bytes of a packet of the camera that the adapter takes; a larger one is a fault of the adapter's
/// MTU, which the check of packet sizes finds.
std::uint64_t expectedPacket(const HostEvidence& host, const NetworkCamera& camera) {
    const AdapterEvidence* const adapter = findAdapter(host, camera.adapter);
    const std::uint64_t size = camera.path.packetSize;
    return adapter == nullptr ? size : std::min(size, adapter->mtu.value_or(size));
}

void checkSize(const HostEvidence& host, const NetworkCamera& camera, Findings& findings) {
    const PathEvidence& path = camera.path;
    const std::string largest = std::to_string(path.largestArrived);
    const std::string evidence = "camera set to " + std::to_string(path.packetSize) +
                                 " bytes, largest test packet that arrived: " + largest + " bytes";
    if (path.largestArrived < expectedPacket(host, camera))
        findings.push_back({Severity::Error, check, camera.id,
                            "Packets of the camera's size do not arrive: a switch or adapter on "
                            "the way takes smaller ones only. Permit large packets (jumbo frames) "
                            "there, or let the camera send smaller ones.",
                            evidence,
                            "spanlet set " + camera.id + " GevSCPSPacketSize " + largest});
    else
        findings.push_back({Severity::Ok, check, camera.id,
                            path.largestArrived < path.packetSize
                                ? "Packets as large as the adapter takes arrive."
                                : "Packets of the camera's size arrive.",
                            evidence, ""});
}

void checkPath(const HostEvidence& host, const NetworkCamera& camera, Findings& findings) {
    const PathEvidence& path = camera.path;
    if (!path.isRestored)
        findings.push_back(
            {Severity::Warning, check, camera.id,
             "The camera has lost its packet size in the test, since it stopped "
             "answering.",
             "camera was set to " + std::to_string(path.packetSize) + " bytes",
             "spanlet set " + camera.id + " GevSCPSPacketSize " + std::to_string(path.packetSize)});
    else if (!path.untested.empty())
        findings.push_back({Severity::Unknown, check, camera.id, path.untested, "", ""});
    else if (path.largestArrived == 0)
        findings.push_back({Severity::Unknown, check, camera.id,
                            "No test packet of the camera arrives, of any size.", "", ""});
    else
        checkSize(host, camera, findings);
}

/// What became of the test packets of all cameras.
void checkFirewall(const HostEvidence& host, Findings& findings) {
    std::vector<std::string> silent;
    std::vector<std::string> heard;
    for (const NetworkCamera& camera : host.networkCameras)
        if (camera.path.untested.empty())
            (camera.path.largestArrived == 0 ? silent : heard).push_back(camera.id);
    const std::string rules = "sudo nft list ruleset";
    if (!silent.empty())
        findings.push_back(
            {Severity::Warning, "firewall", listText(silent),
             "Cameras answer commands, but none of their test packets arrives: a firewall may "
             "discard stream packets, which come from another port than answers. Let UDP packets "
             "of the cameras in. The command shows the rules of this host.",
             "test packets of all sizes", rules});
    else if (!heard.empty())
        findings.push_back({Severity::Ok, "firewall", "this host",
                            "Stream packets of cameras arrive.",
                            "test packets of " + listText(heard), ""});
    else
        findings.push_back({Severity::Unknown, "firewall", "this host",
                            "Whether a firewall discards packets of cameras can only be read by "
                            "root.",
                            "", rules});
}

} // namespace

void checkPaths(const HostEvidence& host, Findings& findings) {
    for (const NetworkCamera& camera : host.networkCameras)
        checkPath(host, camera, findings);
    checkFirewall(host, findings);
}

} // namespace doctor
