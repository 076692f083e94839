// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/HostCollector.h"

#include "platform/HostCommands.h"
#include "platform/NetworkAdapters.h"

#include <algorithm>
#include <utility>

namespace doctor {

namespace {

Number known(std::int64_t number) {
    return number > 0 ? Number(static_cast<std::uint64_t>(number)) : std::nullopt;
}

} // namespace

HostCollector::HostCollector(std::filesystem::path root, platform::EthtoolCall ask)
    : m_root(std::move(root)), m_ask(std::move(ask)) {}

void HostCollector::read(HostEvidence& evidence) const {
    readAdapters(evidence);
    evidence.networkCameras = findNetworkCameras();
    evidence.usbCameras = session::usb3VisionCameras(m_root);
    evidence.memory = session::streamingMemory(m_root);
    evidence.reversePathDropped =
        platform::readNetworkCounters({}, m_root)[platform::NetworkCount::ReversePathDropped];
    evidence.frequencies = platform::frequencyControls(m_root);
    evidence.program = platform::programFile();
}

void HostCollector::readAdapters(HostEvidence& evidence) const {
    const auto addresses = platform::networkAdapters();
    for (const auto& entry : addresses.value_or(std::vector<platform::NetworkAdapter>())) {
        if (!entry.isUp)
            continue;
        const auto found = std::find_if(
            evidence.adapters.begin(), evidence.adapters.end(),
            [&](const AdapterEvidence& adapter) { return adapter.name == entry.name; });
        AdapterEvidence& adapter = found == evidence.adapters.end()
                                       ? evidence.adapters.emplace_back(readAdapter(entry.name))
                                       : *found;
        adapter.subnets.push_back({entry.address, entry.mask});
        adapter.isLoopback = entry.isLoopback;
    }
}

AdapterEvidence HostCollector::readAdapter(const std::string& name) const {
    AdapterEvidence adapter;
    adapter.name = name;
    adapter.mtu = known(platform::mtu(name, m_root / "sys"));
    adapter.speed = platform::linkSpeed(name, m_root / "sys");
    adapter.link = platform::linkSettings(name, m_ask);
    adapter.ring = platform::receiveRing(name, m_ask);
    adapter.coalescing = platform::interruptCoalescing(name, m_ask);
    adapter.reversePathFilter = platform::reversePathFilter(name, m_root);
    adapter.counters = platform::readAdapterCounters(name, m_root);
    return adapter;
}

} // namespace doctor
