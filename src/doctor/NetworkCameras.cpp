// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/HostCollector.h"

#include "gige/BootstrapRegisters.h"
#include "gige/DiscoveryBroadcast.h"
#include "gige/Gvcp.h"
#include "platform/AddressText.h"
#include "platform/NetworkAdapters.h"

#include <future>

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

} // namespace doctor
