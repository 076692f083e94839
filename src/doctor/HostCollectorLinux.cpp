// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/HostCollector.h"

#include "platform/HostCommands.h"
#include "platform/NetworkAdapters.h"
#include "platform/Sysfs.h"

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
    readLowerAdapters(evidence);
    evidence.networkCameras = findNetworkCameras();
    testPaths(evidence.networkCameras, evidence.adapters);
    evidence.usbCameras = session::tryUsbCameras(m_root);
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

void HostCollector::readLowerAdapters(HostEvidence& evidence) const {
    // Those that are added may have lower ones, too: a VLAN on a bond.
    for (std::size_t i = 0; i < evidence.adapters.size(); ++i) {
        const std::vector<std::string> names = evidence.adapters[i].lowerAdapters;
        for (const std::string& name : names)
            if (std::none_of(evidence.adapters.begin(), evidence.adapters.end(),
                             [&](const AdapterEvidence& adapter) { return adapter.name == name; }))
                evidence.adapters.push_back(readAdapter(name));
    }
}

AdapterEvidence HostCollector::readAdapter(const std::string& name) const {
    AdapterEvidence adapter;
    adapter.name = name;
    adapter.mtu = known(platform::mtu(name, m_root / "sys"));
    adapter.lowerAdapters = platform::lowerAdapters(m_root / "sys/class/net" / name);
    adapter.speed = platform::linkSpeed(name, m_root / "sys");
    adapter.link = platform::linkSettings(name, m_ask);
    adapter.ring = platform::receiveRing(name, m_ask);
    adapter.coalescing = platform::interruptCoalescing(name, m_ask);
    adapter.mayCoalesce = platform::mayCoalesce(name, m_root / "sys");
    adapter.reversePathFilter = platform::reversePathFilter(name, m_root);
    adapter.counters = platform::readAdapterCounters(name, m_root);
    return adapter;
}

} // namespace doctor
