// SPDX-License-Identifier: BSD-3-Clause
#include "platform/NetworkCounters.h"

#include "platform/Sysfs.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <map>
#include <sstream>
#include <system_error>
#include <utility>

namespace platform {

namespace {

using Value = NetworkCounters::Value;
/// "Ip InReceives" to its value.
using Table = std::map<std::string, std::uint64_t>;

constexpr auto all = static_cast<std::size_t>(NetworkCount::Count);
constexpr auto firstOfKernel = NetworkCount::BacklogDropped;

/// In the order of NetworkCount. Those of an adapter are names of files.
constexpr std::array<const char*, all> countNames{"rx_packets",
                                                  "rx_bytes",
                                                  "rx_missed_errors",
                                                  "rx_fifo_errors",
                                                  "rx_over_errors",
                                                  "rx_crc_errors",
                                                  "rx_frame_errors",
                                                  "rx_length_errors",
                                                  "rx_dropped",
                                                  "carrier_changes",
                                                  "softnet_stat dropped",
                                                  "Ip InReceives",
                                                  "Ip InDelivers",
                                                  "Ip ForwDatagrams",
                                                  "Ip InHdrErrors",
                                                  "Ip InAddrErrors",
                                                  "Ip InUnknownProtos",
                                                  "Ip InDiscards",
                                                  "Ip ReasmReqds",
                                                  "Ip ReasmOKs",
                                                  "Ip ReasmFails",
                                                  "Tcp InSegs",
                                                  "Udp RcvbufErrors",
                                                  "Udp InCsumErrors",
                                                  "TcpExt IPReversePathFilter"};

/// Adds a file with pairs of lines: "Ip: InReceives InHdrErrors", "Ip: 120 0".
void addTable(Table& table, const std::filesystem::path& file) {
    std::ifstream stream(file);
    std::string headings;
    std::string numbers;
    while (std::getline(stream, headings) && std::getline(stream, numbers)) {
        std::istringstream columns(headings);
        std::istringstream values(numbers);
        std::string group;
        std::string sameGroup;
        if (!(columns >> group) || !(values >> sameGroup) || group != sameGroup)
            return;
        group.back() = ' ';
        std::string name;
        std::string value;
        while (columns >> name && values >> value) {
            std::uint64_t number = 0;
            const char* const end = value.data() + value.size();
            const auto parsed = std::from_chars(value.data(), end, number);
            // Values that are negative, such as the limit of Tcp MaxConn, are no counters.
            if (parsed.ec == std::errc() && parsed.ptr == end)
                table[group + name] = number;
        }
    }
}

/// The sum over all processors; the second of the hexadecimal columns of each.
Value readBacklogDropped(const std::filesystem::path& file) {
    std::ifstream stream(file);
    Value sum;
    std::string line;
    while (std::getline(stream, line)) {
        std::istringstream columns(line);
        std::uint64_t processed = 0;
        std::uint64_t dropped = 0;
        if (!(columns >> std::hex >> processed >> dropped))
            return std::nullopt;
        sum = sum.value_or(0) + dropped;
    }
    return sum;
}

bool isOfAdapter(std::size_t count) {
    return count < static_cast<std::size_t>(firstOfKernel);
}

/// Adds the losses of the adapters below a virtual one (VLAN, bridge), which it does not count. A
/// bond has the sums of its own.
void addLower(NetworkCounters& counters, const std::filesystem::path& folder, int levels) {
    std::error_code error;
    if (levels == 0 || std::filesystem::exists(folder / "bonding", error))
        return;
    for (const std::string& name : lowerAdapters(folder)) {
        const std::filesystem::path lower = folder / (lowerAdapterPrefix + name);
        for (std::size_t i = 0; isOfAdapter(i); ++i) {
            const auto count = static_cast<NetworkCount>(i);
            const Value lost = sysfsNumber(lower / "statistics" / countNames[i]);
            if (count == NetworkCount::AdapterReceived ||
                count == NetworkCount::AdapterReceivedBytes ||
                count == NetworkCount::AdapterCarrierChanges)
                continue;
            Value& sum = counters[count];
            sum = sum && lost ? Value(*sum + *lost) : std::nullopt;
        }
        addLower(counters, lower, levels - 1);
    }
}

void readAdapter(NetworkCounters& counters, const std::filesystem::path& root) {
    // A name must not lead out of the folder.
    if (counters.adapter.empty() || counters.adapter.find('/') != std::string::npos)
        return;
    const std::filesystem::path folder = root / "sys/class/net" / counters.adapter;
    counters.adapterIndex = sysfsNumber(folder / "ifindex");
    for (std::size_t i = 0; isOfAdapter(i); ++i) {
        const auto count = static_cast<NetworkCount>(i);
        const bool isCarrier = count == NetworkCount::AdapterCarrierChanges;
        counters[count] = sysfsNumber((isCarrier ? folder : folder / "statistics") / countNames[i]);
    }
    constexpr int mostLevels = 4;
    addLower(counters, folder, mostLevels);
}

void readKernel(NetworkCounters& counters, const std::filesystem::path& proc) {
    Table table;
    addTable(table, proc / "snmp");
    addTable(table, proc / "netstat");
    for (auto i = static_cast<std::size_t>(firstOfKernel); i < all; ++i)
        if (const auto found = table.find(countNames[i]); found != table.end())
            counters[static_cast<NetworkCount>(i)] = found->second;
    counters[NetworkCount::BacklogDropped] = readBacklogDropped(proc / "softnet_stat");
}

} // namespace

std::string nameOf(NetworkCount count) {
    return countNames[static_cast<std::size_t>(count)];
}

std::optional<std::uint64_t> packetsWithoutRoom(const NetworkCounters& moved) {
    // Drivers count the same packet in several of these.
    std::optional<std::uint64_t> packets;
    for (const NetworkCount count : roomCounts)
        packets = std::max(packets, moved[count]);
    return packets;
}

NetworkCounters readAdapterCounters(const std::string& adapter, const std::filesystem::path& root) {
    NetworkCounters counters;
    counters.adapter = adapter;
    readAdapter(counters, root);
    return counters;
}

NetworkCounters readNetworkCounters(const std::string& adapter, const std::filesystem::path& root) {
    NetworkCounters counters = readAdapterCounters(adapter, root);
    readKernel(counters, root / "proc/net");
    return counters;
}

NetworkCounters difference(const NetworkCounters& before, const NetworkCounters& after) {
    NetworkCounters moved;
    moved.adapter = after.adapter;
    moved.adapterIndex = after.adapterIndex;
    const bool isSame = before.adapter == after.adapter && before.adapterIndex &&
                        before.adapterIndex == after.adapterIndex;
    for (std::size_t i = isSame ? 0 : static_cast<std::size_t>(firstOfKernel); i < all; ++i) {
        const auto count = static_cast<NetworkCount>(i);
        const Value since = before[count];
        const Value until = after[count];
        if (since && until && *until >= *since)
            moved[count] = *until - *since;
    }
    return moved;
}

NetworkCounters sum(const NetworkCounters& former, const NetworkCounters& latter) {
    NetworkCounters moved = latter;
    for (std::size_t i = 0; i < all; ++i) {
        const auto count = static_cast<NetworkCount>(i);
        if (former[count])
            moved[count] = *former[count] + latter[count].value_or(0);
    }
    return moved;
}

} // namespace platform
