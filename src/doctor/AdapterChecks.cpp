// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/CameraAdapters.h"
#include "doctor/HostChecks.h"
#include "doctor/Quantities.h"
#include "platform/HostCommands.h"

#include <algorithm>
#include <string>

namespace doctor {

namespace {

using platform::NetworkCount;

constexpr std::uint64_t usualMtu = 1500;
constexpr std::int64_t gigabit = 1'000'000'000;
/// Long enough to halve the interrupts of a Gigabit link with large packets, and far shorter than a
/// frame.
constexpr std::uint32_t usualMicroseconds = 50;

std::string speedOf(std::int64_t bitsPerSecond) {
    return speedText(static_cast<std::uint64_t>(bitsPerSecond));
}

std::string askedBy(const char* option, const AdapterEvidence& adapter) {
    return std::string(" (ethtool ") + option + (*option == '\0' ? "" : " ") + adapter.name + ")";
}

/// Adds the findings of one adapter.
class Adapter {
public:
    Adapter(const AdapterEvidence& evidence, bool sharesSubnet, Findings& findings)
        : m_evidence(evidence), m_sharesSubnet(sharesSubnet), m_findings(findings) {}

    void checkMtu(const HostEvidence& host);
    void checkRing();
    void checkCoalescing();
    void checkSpeed();
    void checkDuplex();
    void checkReversePath(const HostEvidence& host);
    void checkCounters();

private:
    void add(Severity severity, const char* check, std::string text, std::string evidence = {},
             std::string cure = {}) {
        m_findings.push_back({severity, check, m_evidence.name, std::move(text),
                              std::move(evidence), std::move(cure)});
    }

    const AdapterEvidence& m_evidence;
    const bool m_sharesSubnet;
    Findings& m_findings;
};

/// Raises the lower adapters first, since they limit this one.
std::string jumboCommand(const HostEvidence& host, const AdapterEvidence& adapter) {
    std::string command;
    for (const std::string& name : adapter.lowerAdapters)
        if (const AdapterEvidence* const lower = findAdapter(host, name))
            if (lower->mtu.value_or(0) < platform::jumboPacket)
                command += jumboCommand(host, *lower) + " && ";
    return command + platform::mtuCommand(adapter.name);
}

void Adapter::checkMtu(const HostEvidence& host) {
    if (!m_evidence.mtu || m_evidence.speed == 0) {
        add(Severity::Unknown, "mtu", "The MTU or the speed of the link is not known.");
        return;
    }
    const std::string evidence = "MTU " + std::to_string(*m_evidence.mtu) + " (/sys/class/net/" +
                                 m_evidence.name + "/mtu), link " + speedOf(m_evidence.speed);
    if (*m_evidence.mtu <= usualMtu && m_evidence.speed >= gigabit)
        add(Severity::Hint, "mtu",
            "Large packets (jumbo frames) cost less processor time. Permit them in the switch, "
            "too.",
            evidence, jumboCommand(host, m_evidence));
    else
        add(Severity::Ok, "mtu", "The adapter takes packets that suit its speed.", evidence);
}

void Adapter::checkRing() {
    const auto& ring = m_evidence.ring;
    if (!ring) {
        add(Severity::Unknown, "ring", "The driver does not tell the size of the receive ring.");
        return;
    }
    const Number missed = m_evidence.counters[NetworkCount::AdapterMissed];
    const std::string evidence = "rx " + std::to_string(ring->packets) + " of " +
                                 std::to_string(ring->mostPackets) + askedBy("-g", m_evidence) +
                                 (missed ? ", rx_missed_errors " + std::to_string(*missed) : "");
    if (ring->packets >= ring->mostPackets)
        add(Severity::Ok, "ring", "The receive ring has its full size.", evidence);
    else
        add(missed.value_or(0) > 0 ? Severity::Warning : Severity::Hint, "ring",
            missed.value_or(0) > 0 ? "The receive ring is smaller than it can be, and has been "
                                     "full."
                                   : "The receive ring is smaller than it can be.",
            evidence, platform::receiveRingCommand(m_evidence.name, ring->mostPackets));
}

void Adapter::checkCoalescing() {
    const auto& coalescing = m_evidence.coalescing;
    if (!coalescing) {
        add(Severity::Unknown, "coalescing", "The driver does not tell how it interrupts.");
        return;
    }
    const std::string evidence = "rx-usecs " + std::to_string(coalescing->microseconds) +
                                 ", rx-frames " + std::to_string(coalescing->packets) +
                                 ", adaptive-rx " + (coalescing->isAdaptive ? "on" : "off") +
                                 askedBy("-c", m_evidence);
    const bool isEach =
        coalescing->microseconds == 0 && coalescing->packets <= 1 && !coalescing->isAdaptive;
    if (isEach && !m_evidence.mayCoalesce)
        add(Severity::Unknown, "coalescing",
            "The host of this virtual machine decides on the interrupts of the adapter.", evidence);
    else if (isEach)
        add(Severity::Warning, "coalescing", "The adapter interrupts a processor for every packet.",
            evidence, platform::coalescingCommand(m_evidence.name, usualMicroseconds));
    else
        add(Severity::Ok, "coalescing", "One interrupt serves several packets.", evidence);
}

void Adapter::checkSpeed() {
    const auto& link = m_evidence.link;
    if (!link || link->speed == 0 || !link->possibleSpeed) {
        add(Severity::Unknown, "link-speed",
            "The driver does not tell the speeds that both ends of the cable can do.");
        return;
    }
    const std::string evidence = speedOf(link->speed) + " of " + speedOf(*link->possibleSpeed) +
                                 ", negotiation " + (link->isNegotiated ? "on" : "off") +
                                 askedBy("", m_evidence);
    if (link->speed < *link->possibleSpeed)
        add(Severity::Warning, "link-speed",
            link->isNegotiated ? "The link is slower than both of its ends: change the cable."
                               : "The link is slower than both of its ends, as its speed is fixed.",
            evidence, platform::negotiationCommand(m_evidence.name));
    else
        add(Severity::Ok, "link-speed", "The link is as fast as its ends.", evidence);
}

void Adapter::checkDuplex() {
    const auto& link = m_evidence.link;
    if (!link || link->duplex == platform::Duplex::Unknown)
        add(Severity::Unknown, "duplex", "The driver does not tell the duplex mode.");
    else if (link->duplex == platform::Duplex::Half)
        add(Severity::Error, "duplex",
            "The link is half duplex: packets collide. Let both ends negotiate.",
            "Half" + askedBy("", m_evidence), platform::negotiationCommand(m_evidence.name));
    else
        add(Severity::Ok, "duplex", "The link is full duplex.", "Full" + askedBy("", m_evidence));
}

void Adapter::checkReversePath(const HostEvidence& host) {
    const Number& dropped = host.reversePathDropped;
    const Number& filter = m_evidence.reversePathFilter;
    if (!filter) {
        add(Severity::Unknown, "reverse-path", "The reverse-path filter cannot be read.");
        return;
    }
    std::string evidence = "rp_filter " + std::to_string(*filter) +
                           " (/proc/sys/net/ipv4/conf, of all and " + m_evidence.name + ")";
    if (dropped)
        evidence += ", IPReversePathFilter " + std::to_string(*dropped) + " (/proc/net/netstat)";
    if (*filter != platform::strictReversePath)
        add(Severity::Ok, "reverse-path", "The reverse-path filter is not strict.", evidence);
    else if (m_sharesSubnet)
        add(Severity::Warning, "reverse-path",
            "The strict reverse-path filter discards packets of cameras to which another adapter "
            "of their subnet leads.",
            evidence, platform::reversePathCommand(m_evidence.name));
    else if (dropped.value_or(0) > 0)
        add(Severity::Warning, "reverse-path",
            "The strict reverse-path filter has discarded packets, perhaps of cameras in another "
            "subnet.",
            evidence, platform::reversePathCommand(m_evidence.name));
    else if (!host.memory.mayOpenPacketSockets)
        add(Severity::Hint, "reverse-path",
            "The strict reverse-path filter discards answers of cameras in another subnet, which "
            "are then not found.",
            evidence, platform::reversePathCommand(m_evidence.name));
    else
        add(Severity::Ok, "reverse-path", "The strict reverse-path filter has discarded nothing.",
            evidence);
}

void Adapter::checkCounters() {
    std::string damaged;
    std::string missed;
    bool isKnown = false;
    const auto append = [&](std::string& list, NetworkCount count) {
        const Number value = m_evidence.counters[count];
        isKnown = isKnown || value.has_value();
        if (value.value_or(0) > 0)
            list += (list.empty() ? "" : ", ") + nameOf(count) + ' ' + std::to_string(*value);
    };
    for (const auto count : {NetworkCount::AdapterChecksumErrors, NetworkCount::AdapterFrameErrors,
                             NetworkCount::AdapterLengthErrors})
        append(damaged, count);
    for (const auto count : {NetworkCount::AdapterMissed, NetworkCount::AdapterFifoErrors,
                             NetworkCount::AdapterOverruns})
        append(missed, count);
    const std::string source = " (/sys/class/net/" + m_evidence.name + "/statistics)";
    if (!damaged.empty())
        add(Severity::Hint, "error-counters",
            "Packets came damaged at some time since the adapter is up. Where the counters still "
            "grow, change the cable.",
            damaged + source);
    if (!missed.empty())
        add(Severity::Hint, "error-counters",
            "The adapter had no room for packets at some time since it is up.", missed + source);
    if (!isKnown)
        add(Severity::Unknown, "error-counters", "The adapter's counters cannot be read.");
    else if (damaged.empty() && missed.empty())
        add(Severity::Ok, "error-counters", "The adapter has counted no error.", "all 0" + source);
}

} // namespace

void checkAdapters(const HostEvidence& host, Findings& findings) {
    for (const AdapterEvidence& evidence : host.adapters) {
        if (evidence.isLoopback || !hasCameras(host, evidence.name))
            continue;
        Adapter adapter(evidence, sharesSubnet(host, evidence), findings);
        adapter.checkMtu(host);
        // The adapters with the cables have the others.
        if (evidence.lowerAdapters.empty()) {
            adapter.checkRing();
            adapter.checkCoalescing();
            adapter.checkSpeed();
            adapter.checkDuplex();
            adapter.checkCounters();
        }
        if (!evidence.subnets.empty())
            adapter.checkReversePath(host);
    }
}

} // namespace doctor
