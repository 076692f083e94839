// SPDX-License-Identifier: BSD-3-Clause
#include "gige/DiscoveryBroadcast.h"

#include "gige/GvcpCommand.h"
#include "platform/NetworkAdapters.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace gige {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::uint16_t requestId = 1;

std::vector<std::uint8_t> question(Reach reach) {
    const std::uint8_t others = reach == Reach::AllSubnets ? broadcastAcknowledge : std::uint8_t{0};
    return gvcpPacket(GvcpCommand::Discovery,
                      static_cast<std::uint8_t>(acknowledgeRequired | others), requestId);
}

std::tuple<std::string, std::uint64_t, std::uint32_t> keyOf(const DiscoveredCamera& camera) {
    return {camera.adapter, camera.macAddress, camera.address};
}

} // namespace

DiscoveryBroadcast::DiscoveryBroadcast(Reach reach) : m_question(question(reach)) {
    const auto adapters = platform::networkAdapters();
    for (const auto& adapter : adapters.value_or(std::vector<platform::NetworkAdapter>())) {
        if (!adapter.isUp)
            continue;
        auto made = std::make_unique<BroadcastSocket>(adapter, reach);
        if (made->send(m_question))
            m_sockets.push_back(std::move(made));
    }
}

void DiscoveryBroadcast::sendAgain() const {
    for (const auto& socket : m_sockets)
        socket->send(m_question);
}

void DiscoveryBroadcast::wait(std::chrono::milliseconds limit) const {
    std::vector<int> all;
    for (const auto& socket : m_sockets)
        for (const int handle : socket->handles())
            all.push_back(handle);
    waitForAny(all, limit);
}

std::vector<DiscoveredCamera> DiscoveryBroadcast::answers() const {
    std::vector<DiscoveredCamera> cameras;
    for (const auto& socket : m_sockets) {
        while (const auto packet = socket->receive()) {
            auto camera = parseDiscovery(packet->data(), packet->size(), requestId);
            if (!camera)
                continue;
            camera->adapter = socket->adapter().name;
            cameras.push_back(std::move(*camera));
        }
    }
    return cameras;
}

std::vector<DiscoveredCamera> discoverCameras(std::chrono::milliseconds wait) {
    const auto begun = Clock::now();
    DiscoveryBroadcast call(Reach::AllSubnets);
    std::map<std::tuple<std::string, std::uint64_t, std::uint32_t>, DiscoveredCamera> found;
    bool isRepeated = false;
    for (auto passed = Clock::duration(0); passed < wait; passed = Clock::now() - begun) {
        if (!isRepeated && passed > wait / 2) {
            call.sendAgain();
            isRepeated = true;
        }
        const auto left = (isRepeated ? wait : wait / 2) - passed;
        call.wait(std::chrono::duration_cast<std::chrono::milliseconds>(left) +
                  std::chrono::milliseconds(1));
        for (DiscoveredCamera& camera : call.answers())
            found.insert_or_assign(keyOf(camera), std::move(camera));
    }
    std::vector<DiscoveredCamera> cameras;
    for (auto& [key, camera] : found)
        cameras.push_back(std::move(camera));
    return cameras;
}

} // namespace gige
