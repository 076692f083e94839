// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/CameraAdapters.h"
#include "doctor/HostCollector.h"

#include "gige/BootstrapRegisters.h"
#include "gige/DiscoveryBroadcast.h"
#include "gige/Gvcp.h"
#include "gige/PathProbe.h"
#include "platform/AddressText.h"
#include "platform/NetworkAdapters.h"

#include <algorithm>
#include <future>
#include <limits>

namespace doctor {

namespace {

using namespace std::chrono_literals;

constexpr auto discoveryTime = 1000ms;
constexpr auto answerTime = 200ms;
constexpr int tries = 2;
/// The examination does not wait for a camera that asks for more time.
constexpr auto noPending = 0ms;

std::uint32_t readOr0(const gige::Gvcp& camera, std::uint32_t address) {
    const auto answer = camera.readRegister(address);
    return answer ? gige::Gvcp::value(*answer).value_or(0) : 0;
}

void readControl(NetworkCamera& camera) {
    const gige::Gvcp gvcp(camera.address, answerTime, tries, noPending);
    const auto privilege = gvcp.readRegister(gige::privilegeRegister);
    camera.isReachable = privilege.has_value();
    if (!privilege)
        return;
    const gige::ControlState state = gige::controlState(*privilege);
    if (state != gige::ControlState::Controlled && state != gige::ControlState::Exclusive)
        return;
    camera.controller =
        CameraController{readOr0(gvcp, gige::controllerAddressRegister),
                         static_cast<std::uint16_t>(readOr0(gvcp, gige::controllerPortRegister))};
}

NetworkCamera describe(const gige::DiscoveredCamera& found) {
    NetworkCamera camera;
    camera.id = gige::cameraId(platform::macText(found.macAddress));
    camera.macAddress = found.macAddress;
    camera.address = found.address;
    camera.mask = found.mask;
    camera.adapter = found.adapter;
    if (const auto route = platform::adapterTowards(found.address))
        camera.routeAdapter = route->name;
    readControl(camera);
    return camera;
}

/// Why a camera cannot be tested; empty when it can.
std::string obstacle(const NetworkCamera& camera, const std::vector<NetworkCamera>& all) {
    if (!camera.isReachable)
        return "The camera does not answer at its address, so that it cannot be told to send a "
               "test packet.";
    if (std::any_of(all.begin(), all.end(),
                    [&](const NetworkCamera& other) { return areTwins(camera, other); }))
        return "Another camera has the same address, so that either may send a test packet.";
    if (camera.controller)
        return "Another program controls the camera, so that this one cannot make it send a test "
               "packet.";
    if (camera.adapter != camera.routeAdapter)
        return "The camera is tested on " + camera.routeAdapter + ", which leads to its address.";
    return {};
}

PathEvidence testPath(std::uint32_t camera, std::uint32_t mtu) {
    const gige::PathMeasurement found = gige::PathProbe(camera, mtu).run();
    PathEvidence path;
    path.packetSize = found.packetSize;
    path.largestArrived = found.largestArrived;
    path.isRestored = found.result != gige::PathResult::NotRestored;
    if (found.result == gige::PathResult::Controlled)
        path.untested = "Another program has taken control of the camera.";
    else if (found.result == gige::PathResult::NoAnswer)
        path.untested = "The camera does not answer.";
    else if (found.result == gige::PathResult::Refused)
        path.untested = "The camera refuses access to the registers of its stream.";
    return path;
}

} // namespace

std::vector<NetworkCamera> findNetworkCameras() {
    // At the same time, since each that cannot be reached takes its time.
    std::vector<std::future<NetworkCamera>> answers;
    for (const gige::DiscoveredCamera& found : gige::discoverCameras(discoveryTime))
        answers.push_back(std::async(std::launch::async, describe, found));
    std::vector<NetworkCamera> cameras;
    for (auto& answer : answers)
        cameras.push_back(answer.get());
    return cameras;
}

void testPaths(std::vector<NetworkCamera>& cameras, const std::vector<AdapterEvidence>& adapters) {
    std::vector<std::pair<PathEvidence*, std::future<PathEvidence>>> tests;
    for (NetworkCamera& camera : cameras) {
        camera.path.untested = obstacle(camera, cameras);
        if (!camera.path.untested.empty())
            continue;
        const auto adapter =
            std::find_if(adapters.begin(), adapters.end(),
                         [&](const AdapterEvidence& each) { return each.name == camera.adapter; });
        constexpr std::uint64_t all = std::numeric_limits<std::uint32_t>::max();
        const Number mtu = adapter == adapters.end() ? Number() : adapter->mtu;
        tests.emplace_back(
            &camera.path, std::async(std::launch::async, testPath, camera.address,
                                     static_cast<std::uint32_t>(std::min(mtu.value_or(all), all))));
    }
    for (auto& [path, test] : tests)
        *path = test.get();
}

} // namespace doctor
