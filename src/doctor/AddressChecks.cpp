// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/CameraAdapters.h"
#include "doctor/HostChecks.h"
#include "doctor/Quantities.h"
#include "platform/AddressText.h"
#include "platform/HostCommands.h"

#include <algorithm>
#include <string>
#include <vector>

namespace doctor {

namespace {

using platform::addressText;
using platform::macText;

std::string subnetsOf(const AdapterEvidence& adapter) {
    std::vector<std::string> texts;
    for (const Subnet& subnet : adapter.subnets)
        texts.push_back(addressText(subnet.address, subnet.mask));
    return adapter.name + ' ' + listText(texts);
}

std::string addressCommand(const HostEvidence& host, const NetworkCamera& camera) {
    const AdapterEvidence* const adapter = findAdapter(host, camera.adapter);
    const std::uint32_t address =
        adapter == nullptr ? 0 : proposedAddress(host, *adapter, camera.address);
    return address == 0
               ? std::string()
               : "spanlet set-ip " + macText(camera.macAddress) + ' ' + addressText(address);
}

/// A subnet that no adapter has, for one that shares its own.
std::string freeSubnet(const HostEvidence& host) {
    constexpr std::uint32_t privateNetworks = 0xC0A80000;
    constexpr std::uint32_t mask = 0xFFFFFF00;
    for (std::uint32_t third = 10; third < 255; ++third) {
        AdapterEvidence candidate;
        candidate.subnets = {{privateNetworks | third << 8U | 1U, mask}};
        if (!sharesSubnet(host, candidate))
            return addressText(candidate.subnets[0].address, mask);
    }
    return {};
}

/// A camera answered on the adapter, and packets to it leave by another one.
bool isMisrouted(const HostEvidence& host, const AdapterEvidence& one,
                 const AdapterEvidence& other) {
    return std::any_of(host.networkCameras.begin(), host.networkCameras.end(),
                       [&](const NetworkCamera& camera) {
                           return !camera.isReachable && camera.adapter == one.name &&
                                  camera.routeAdapter == other.name;
                       });
}

/// Takes the shared subnet from an adapter, and gives it another one when it has no more.
std::string subnetCommand(const HostEvidence& host, const AdapterEvidence& changed,
                          const AdapterEvidence& kept) {
    const auto shared =
        std::find_if(changed.subnets.begin(), changed.subnets.end(), [&](const Subnet& subnet) {
            AdapterEvidence only;
            only.subnets = {subnet};
            return overlap(only, kept);
        });
    const std::string device = " dev " + platform::shellWord(changed.name);
    const std::string removed =
        "sudo ip address del " + addressText(shared->address, shared->mask) + device;
    if (changed.subnets.size() > 1)
        return removed;
    const std::string address = freeSubnet(host);
    return address.empty() ? std::string()
                           : removed + " && sudo ip address add " + address + device;
}

void checkPair(const HostEvidence& host, const AdapterEvidence& one, const AdapterEvidence& other,
               Findings& findings) {
    const bool isBroken = isMisrouted(host, one, other) || isMisrouted(host, other, one);
    const bool isUsed = hasCameras(host, one.name) || hasCameras(host, other.name);
    // The second one, unless only the first one has further subnets.
    const bool changesFirst = one.subnets.size() > 1 && other.subnets.size() == 1;
    const std::string cure =
        changesFirst ? subnetCommand(host, one, other) : subnetCommand(host, other, one);
    findings.push_back(
        {isBroken ? Severity::Error : (isUsed ? Severity::Warning : Severity::Hint),
         "subnet-overlap", one.name + " and " + other.name,
         isBroken
             ? "Two adapters are in one subnet: packets to a camera leave by the wrong one, so "
               "it cannot be opened. Give each adapter, and the cameras on it, a subnet of "
               "its own."
             : "Two adapters are in one subnet: packets to cameras may leave by the wrong "
               "one. Give each adapter, and the cameras on it, a subnet of its own.",
         subnetsOf(one) + ", " + subnetsOf(other), cure});
}

void checkSubnets(const HostEvidence& host, Findings& findings) {
    bool isFine = true;
    for (auto one = host.adapters.begin(); one != host.adapters.end(); ++one) {
        for (auto other = one + 1; other != host.adapters.end(); ++other) {
            if (!overlap(*one, *other))
                continue;
            checkPair(host, *one, *other, findings);
            isFine = false;
        }
    }
    if (isFine)
        findings.push_back(
            {Severity::Ok, "subnet-overlap", "this host", "Each adapter has subnets of its own.",
             std::to_string(
                 std::count_if(host.adapters.begin(), host.adapters.end(),
                               [](const AdapterEvidence& it) { return !it.subnets.empty(); })) +
                 " adapters with addresses",
             ""});
}

void checkDoubles(const HostEvidence& host, Findings& findings) {
    const auto& cameras = host.networkCameras;
    for (auto camera = cameras.begin(); camera != cameras.end(); ++camera) {
        // A camera may answer on several adapters.
        const auto twin = std::find_if(cameras.begin(), camera, [&](const NetworkCamera& other) {
            return areTwins(other, *camera);
        });
        const AdapterEvidence* const adapter = findAdapter(host, camera->adapter);
        const bool isOwn =
            adapter != nullptr && !adapter->isLoopback && isOwnAddress(host, camera->address);
        if (twin == camera && !isOwn)
            continue;
        const std::string owner = isOwn ? "this host" : twin->id + " on " + twin->adapter;
        findings.push_back({Severity::Error, "double-address", camera->id,
                            std::string("The camera has the same address as ") +
                                (isOwn ? "this host" : "another camera") +
                                ", so neither is reached reliably.",
                            addressText(camera->address) + " on " + camera->adapter + ", and of " +
                                owner + " (discovery)",
                            addressCommand(host, *camera)});
    }
}

/// Whether the adapter on which the camera answered, or another one on which it did, is in the
/// camera's subnet.
bool isInSubnet(const HostEvidence& host, const NetworkCamera& camera) {
    return std::any_of(host.networkCameras.begin(), host.networkCameras.end(),
                       [&](const NetworkCamera& answer) {
                           const AdapterEvidence* const adapter = findAdapter(host, answer.adapter);
                           return answer.macAddress == camera.macAddress && adapter != nullptr &&
                                  std::any_of(adapter->subnets.begin(), adapter->subnets.end(),
                                              [&](const Subnet& subnet) {
                                                  return subnet.contains(answer.address);
                                              });
                       });
}

void checkSubnet(const HostEvidence& host, const NetworkCamera& camera, Findings& findings) {
    const AdapterEvidence* const adapter = findAdapter(host, camera.adapter);
    const std::string evidence = "camera " + addressText(camera.address, camera.mask) +
                                 " (discovery), adapter " +
                                 (adapter == nullptr ? camera.adapter : subnetsOf(*adapter));
    if (camera.isReachable || isInSubnet(host, camera))
        findings.push_back({Severity::Ok, "subnet", camera.id,
                            "The camera's address suits the adapter.", evidence, ""});
    else
        findings.push_back({Severity::Error, "subnet", camera.id,
                            "The camera is in another subnet than the adapter on which it "
                            "answers, so it cannot be opened.",
                            evidence, addressCommand(host, camera)});
}

bool isOpenedHere(const HostEvidence& host, const NetworkCamera& camera) {
    for (const LinkEvidence& link : host.links)
        for (const StreamingCamera& opened : link.cameras)
            if (opened.isOpened && opened.id == camera.id)
                return true;
    return false;
}

/// Why it cannot be known whether a program controls the camera; empty when it can. Cameras answer
/// broadcasts of the discovery only: registers are read at the camera's address.
std::string controlObstacle(const HostEvidence& host, const NetworkCamera& camera) {
    const auto& cameras = host.networkCameras;
    if (std::any_of(cameras.begin(), cameras.end(),
                    [&](const NetworkCamera& other) { return areTwins(other, camera); }))
        return "Any of several cameras with this address may answer, so it is not known whether "
               "another program controls this one.";
    if (camera.isReachable ||
        std::any_of(cameras.begin(), cameras.end(), [&](const NetworkCamera& other) {
            return other.isReachable && other.macAddress == camera.macAddress;
        }))
        return {};
    return camera.routeAdapter.empty()
               ? "This host has no route to the camera's address, so it is not known whether "
                 "another program controls it."
               : "The camera does not answer at its address, so it is not known whether another "
                 "program controls it.";
}

void checkController(const HostEvidence& host, const NetworkCamera& camera, Findings& findings) {
    const std::string obstacle = controlObstacle(host, camera);
    if (!obstacle.empty()) {
        findings.push_back(
            {Severity::Unknown, "controller", camera.id, obstacle,
             addressText(camera.address, camera.mask) + " on " + camera.adapter + " (discovery)" +
                 (camera.routeAdapter.empty() ? std::string()
                                              : ", packets to it leave by " + camera.routeAdapter),
             ""});
        return;
    }
    if (!camera.controller || isOpenedHere(host, camera)) {
        if (camera.isReachable)
            findings.push_back({Severity::Ok, "controller", camera.id,
                                "No other program controls the camera.", "", ""});
        return;
    }
    const CameraController& by = *camera.controller;
    const bool isHere = by.address != 0 && isOwnAddress(host, by.address);
    const std::string port = by.port == 0 ? "" : " port " + std::to_string(by.port);
    findings.push_back(
        {Severity::Error, "controller", camera.id,
         "Another program controls the camera" +
             (by.address == 0 ? std::string(", and the camera does not tell which.")
                              : (isHere ? " on this host: end it, or close the camera in it."
                                        : " on another computer: end it, or close the camera "
                                          "in it.")),
         (by.address == 0 ? "control privilege is taken" : addressText(by.address)) + port +
             " (registers 0xA00, 0xA04, 0xA14)",
         isHere && by.port != 0 ? platform::portOwnerCommand(by.port) : std::string()});
}

} // namespace

void checkAddresses(const HostEvidence& host, Findings& findings) {
    checkSubnets(host, findings);
    checkDoubles(host, findings);
    for (const NetworkCamera& camera : host.networkCameras) {
        checkSubnet(host, camera, findings);
        checkController(host, camera, findings);
    }
}

} // namespace doctor
