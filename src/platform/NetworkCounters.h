// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace platform {

/// What the operating system counts of the packets that it receives. The comment names the counter
/// of Linux.
enum class NetworkCount : std::size_t {
    /// Of the adapter: /sys/class/net/<adapter>/statistics/.
    AdapterReceived,       ///< rx_packets
    AdapterReceivedBytes,  ///< rx_bytes
    AdapterMissed,         ///< rx_missed_errors: no room in the adapter's ring
    AdapterFifoErrors,     ///< rx_fifo_errors
    AdapterOverruns,       ///< rx_over_errors
    AdapterChecksumErrors, ///< rx_crc_errors: damaged on the wire
    AdapterFrameErrors,    ///< rx_frame_errors: damaged on the wire
    AdapterLengthErrors,   ///< rx_length_errors
    AdapterDropped,        ///< rx_dropped
    AdapterCarrierChanges, ///< carrier_changes, beside statistics/: the link went up or down
    /// Of all adapters: /proc/net/softnet_stat, second column.
    BacklogDropped,
    /// Of the network namespace: /proc/net/snmp.
    IpReceived,         ///< Ip: InReceives
    IpDelivered,        ///< Ip: InDelivers
    IpForwarded,        ///< Ip: ForwDatagrams
    IpHeaderErrors,     ///< Ip: InHdrErrors
    IpAddressErrors,    ///< Ip: InAddrErrors
    IpUnknownProtocols, ///< Ip: InUnknownProtos
    IpDiscarded,        ///< Ip: InDiscards
    IpFragments,        ///< Ip: ReasmReqds
    IpJoined,           ///< Ip: ReasmOKs
    IpJoinFailures,     ///< Ip: ReasmFails
    TcpSegments,        ///< Tcp: InSegs
    UdpBufferErrors,    ///< Udp: RcvbufErrors
    UdpChecksumErrors,  ///< Udp: InCsumErrors
    /// Of the network namespace: /proc/net/netstat.
    ReversePathDropped, ///< TcpExt: IPReversePathFilter
    Count
};

/// The counters of one adapter and of the kernel behind it. A value, reentrant.
class NetworkCounters {
public:
    using Value = std::optional<std::uint64_t>;

    /// Nothing for a counter that cannot be read.
    Value& operator[](NetworkCount count) { return m_values[static_cast<std::size_t>(count)]; }
    Value operator[](NetworkCount count) const { return m_values[static_cast<std::size_t>(count)]; }

    /// Name of the adapter; empty when it is not known.
    std::string adapter;
    /// Changes when the adapter is made anew, which starts its counters at 0.
    Value adapterIndex;

private:
    std::array<Value, static_cast<std::size_t>(NetworkCount::Count)> m_values;
};

/// The name of a counter that administrators know: "rx_missed_errors", "Udp RcvbufErrors".
std::string nameOf(NetworkCount count);

/// Where drivers count packets for which the adapter had no room.
constexpr NetworkCount roomCounts[] = {NetworkCount::AdapterMissed, NetworkCount::AdapterFifoErrors,
                                       NetworkCount::AdapterOverruns};

/// Packets for which the adapter had no room; nothing where no counter is known.
std::optional<std::uint64_t> packetsWithoutRoom(const NetworkCounters& moved);

/// Name of the adapter that has an IPv4 address (host byte order); empty when there is none, and on
/// Windows.
std::string adapterWithAddress(std::uint32_t address);

/// Reads the counters of \p adapter below \p root; the losses of a VLAN or bridge with those of the
/// adapters below it. The adapters below /sys are those of the network
/// namespace that mounted it. All counters are unknown on Windows.
NetworkCounters readNetworkCounters(const std::string& adapter,
                                    const std::filesystem::path& root = "/");

/// The same without the counters of the kernel: quicker.
NetworkCounters readAdapterCounters(const std::string& adapter,
                                    const std::filesystem::path& root = "/");

/// How far the counters have moved. Unknown: a counter that went back, and all of an adapter that
/// was made anew meanwhile.
NetworkCounters difference(const NetworkCounters& before, const NetworkCounters& after);

/// What has moved by \p former, and then by \p latter; unknown is what neither tells.
NetworkCounters sum(const NetworkCounters& former, const NetworkCounters& latter);

} // namespace platform
