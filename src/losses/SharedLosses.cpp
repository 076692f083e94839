// SPDX-License-Identifier: BSD-3-Clause
#include "losses/SharedLosses.h"

#include "losses/LossText.h"
#include "platform/HostCommands.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace {

using platform::NetworkCount;
using platform::NetworkCounters;

/// A counter of all programs is named from one in so many of the missing packets.
constexpr std::uint64_t leastShare = 10;

constexpr NetworkCount damageCounts[] = {NetworkCount::AdapterChecksumErrors,
                                         NetworkCount::AdapterFrameErrors,
                                         NetworkCount::AdapterLengthErrors};

std::uint64_t moved(const NetworkCounters& network, NetworkCount count) {
    return network[count].value_or(0);
}

/// "rx_missed_errors +12, rx_fifo_errors +12": those that moved.
template <typename Counts>
std::string movedText(const NetworkCounters& network, const Counts& counts) {
    std::string text;
    for (const NetworkCount count : counts)
        if (const std::uint64_t by = moved(network, count); by > 0)
            text +=
                (text.empty() ? "" : ", ") + platform::nameOf(count) + " +" + std::to_string(by);
    return text;
}

/// Collects the places of one interface.
class Places {
public:
    Places(const InterfaceEvidence& evidence, std::uint64_t missing)
        : m_network(evidence.network), m_missing(missing), m_isRepaired(isAllRepaired(evidence)),
          m_surplus(evidence.surplus.value_or(0)), m_program(evidence.program),
          m_usesSockets(std::any_of(
              evidence.cameras.begin(), evidence.cameras.end(),
              [](const CameraEvidence& camera) { return !camera.usesRing.value_or(true); })) {}

    std::vector<SharedLoss> find();

private:
    void add(LossPlace place, std::uint64_t packets, std::string text, std::string cure);
    void findInAdapter();
    void findBeforeIp();
    void findInIp();
    std::uint64_t refused() const;

    const NetworkCounters& m_network;
    const std::uint64_t m_missing;
    const bool m_isRepaired;
    const std::int64_t m_surplus;
    const std::filesystem::path m_program;
    /// Whether packets of a camera pass the operating system's IP and UDP.
    const bool m_usesSockets;
    std::vector<SharedLoss> m_losses;
};

void Places::add(LossPlace place, std::uint64_t packets, std::string text, std::string cure) {
    if (packets > 0 && packets >= m_missing / leastShare)
        m_losses.push_back({{place, "", std::move(text), std::move(cure), m_isRepaired}, packets});
}

void Places::findInAdapter() {
    const std::string adapter = m_network.adapter;
    add(LossPlace::Adapter, platform::packetsWithoutRoom(m_network).value_or(0),
        lossText(Losses::tr("The adapter %1 had no room for packets: %2."),
                 {adapter, movedText(m_network, platform::roomCounts)}),
        lossText(
            Losses::tr("Give it a longer ring, up to what ethtool -g %1 shows: sudo ethtool -G "
                       "%1 rx 4096"),
            {adapter}));
    std::uint64_t damaged = 0;
    for (const NetworkCount count : damageCounts)
        damaged += moved(m_network, count);
    add(LossPlace::Adapter, damaged,
        lossText(Losses::tr("The adapter %1 refused damaged packets: %2."),
                 {adapter, movedText(m_network, damageCounts)}),
        lossText(Losses::tr("Change the cable between the switch and this host.")));
    // The kernel counts a full backlog here as well.
    const std::uint64_t backlog = moved(m_network, NetworkCount::BacklogDropped);
    const std::uint64_t dropped = moved(m_network, NetworkCount::AdapterDropped);
    add(LossPlace::Adapter, dropped - std::min(dropped, backlog),
        lossText(Losses::tr("The driver of the adapter %1 dropped packets: rx_dropped +%2."),
                 {adapter, std::to_string(dropped)}),
        lossText(Losses::tr("The driver's own counters tell why: ethtool -S %1"), {adapter}));
}

/// Rules that discard packets before IP (tc, nftables' netdev family, XDP) have no counter here.
/// Then the adapter has received packets that neither the streams nor IP have.
void Places::findBeforeIp() {
    const std::uint64_t backlog = moved(m_network, NetworkCount::BacklogDropped);
    add(LossPlace::Kernel, backlog,
        lossText(Losses::tr("The operating system's queue behind the adapters was full: %1, of all "
                            "adapters."),
                 {movedText(m_network,
                            std::initializer_list<NetworkCount>{NetworkCount::BacklogDropped})}),
        lossText(
            Losses::tr("Permit a longer queue: sudo sysctl -w net.core.netdev_max_backlog=10000")));
    const auto received = m_network[NetworkCount::AdapterReceived];
    const auto ofIp = m_network[NetworkCount::IpReceived];
    if (!received || !ofIp)
        return;
    // The kernel joins segments of TCP before it counts them.
    const std::uint64_t known = *ofIp + moved(m_network, NetworkCount::TcpSegments) + backlog;
    const std::uint64_t gone = *received - std::min(*received, known);
    if (gone < m_missing / 2 || m_surplus < static_cast<std::int64_t>(m_missing / 2))
        return;
    add(LossPlace::Kernel, gone,
        lossText(
            Losses::tr("A rule of this host discarded packets: the adapter %1 received %2, and "
                       "%3 got as far as IP."),
            {m_network.adapter, std::to_string(*received), std::to_string(*ofIp)}),
        lossText(Losses::tr("Look for the rule: tc -s filter show dev %1 ingress; sudo nft list "
                            "ruleset; ip link show %1 (xdp)"),
                 {m_network.adapter}));
}

/// Packets that IP received and neither delivered nor counted as something else: the firewall
/// or the routes discarded them.
std::uint64_t Places::refused() const {
    if (!m_network[NetworkCount::IpReceived] || !m_network[NetworkCount::IpDelivered])
        return 0;
    std::uint64_t known = moved(m_network, NetworkCount::ReversePathDropped);
    for (const NetworkCount count :
         {NetworkCount::IpDelivered, NetworkCount::IpForwarded, NetworkCount::IpHeaderErrors,
          NetworkCount::IpAddressErrors, NetworkCount::IpUnknownProtocols,
          NetworkCount::IpDiscarded, NetworkCount::IpFragments})
        known += moved(m_network, count);
    known -= std::min(known, moved(m_network, NetworkCount::IpJoined));
    const std::uint64_t received = moved(m_network, NetworkCount::IpReceived);
    return received - std::min(received, known);
}

void Places::findInIp() {
    if (!m_usesSockets)
        return;
    const std::string adapter = m_network.adapter;
    const std::uint64_t reverse = moved(m_network, NetworkCount::ReversePathDropped);
    add(LossPlace::Kernel, reverse,
        lossText(
            Losses::tr("The operating system discarded packets whose sender it would not reach "
                       "by the adapter that they came through: IPReversePathFilter +%1."),
            {std::to_string(reverse)}),
        lossText(
            Losses::tr("Give the cameras addresses of the adapter's network, or permit it: sudo "
                       "sysctl -w net.ipv4.conf.%1.rp_filter=2 net.ipv4.conf.all.rp_filter=2"),
            {adapter}));
    const std::uint64_t failures = moved(m_network, NetworkCount::IpJoinFailures);
    add(LossPlace::Kernel, failures,
        lossText(
            Losses::tr("The operating system could not join split packets: Ip ReasmFails +%1."),
            {std::to_string(failures)}),
        lossText(
            Losses::tr("Let the cameras send packets that need not be split: spanlet benchmark "
                       "--adjust-packet-size")));
    const std::uint64_t damaged = moved(m_network, NetworkCount::UdpChecksumErrors);
    add(LossPlace::Kernel, damaged,
        lossText(Losses::tr("The operating system refused damaged packets: Udp InCsumErrors +%1."),
                 {std::to_string(damaged)}),
        lossText(Losses::tr("Change the cables of the cameras and of the switch.")));
    const std::uint64_t filtered = refused();
    if (m_surplus >= static_cast<std::int64_t>(m_missing / 2))
        add(LossPlace::Kernel, filtered,
            lossText(Losses::tr("Rules of this host's firewall or routes discarded packets: IP "
                                "received %1 that it neither delivered nor counted as faulty."),
                     {std::to_string(filtered)}),
            lossText(
                Losses::tr("Permit UDP from the cameras, for example: sudo iptables -I INPUT -i "
                           "%1 -p udp -j ACCEPT. Or receive by the packet ring: %2"),
                {adapter, platform::packetSocketCommand(m_program)}));
}

std::vector<SharedLoss> Places::find() {
    if (m_missing == 0)
        return {};
    findInAdapter();
    findBeforeIp();
    findInIp();
    return std::move(m_losses);
}

} // namespace

std::vector<SharedLoss> sharedLosses(const InterfaceEvidence& evidence, std::uint64_t missing) {
    return Places(evidence, missing).find();
}

std::string unreadCounters(const NetworkCounters& network) {
    std::string names;
    for (const NetworkCount count :
         {NetworkCount::AdapterReceived, NetworkCount::AdapterMissed,
          NetworkCount::AdapterFifoErrors, NetworkCount::AdapterOverruns,
          NetworkCount::AdapterChecksumErrors, NetworkCount::AdapterFrameErrors,
          NetworkCount::AdapterLengthErrors, NetworkCount::AdapterDropped,
          NetworkCount::BacklogDropped})
        if (!network[count])
            names += (names.empty() ? "" : ", ") + platform::nameOf(count);
    return names;
}

bool isAllRepaired(const InterfaceEvidence& evidence) {
    return std::all_of(
        evidence.cameras.begin(), evidence.cameras.end(),
        [](const CameraEvidence& camera) { return framesBad(camera) == 0 && !isSilent(camera); });
}
