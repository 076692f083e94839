// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/ByteOrder.h"
#include "engine/host/HostNetwork.h"
#include "platform/NetworkAdapters.h"

#include <net/if.h>

namespace host {

namespace {

/// Reassembly size and address type stay 0: the kernel has none per address. The physical address
/// stays 0, since nothing reads it.
class LinuxNetwork : public HostNetwork {
public:
    bool addressTable(std::vector<AddressRow>& rows) const override {
        rows.clear();
        const auto adapters = platform::networkAdapters();
        if (!adapters)
            return false;
        for (const platform::NetworkAdapter& adapter : *adapters)
            rows.push_back({if_nametoindex(adapter.name.c_str()), hostToNetwork(adapter.address),
                            hostToNetwork(adapter.mask), hostToNetwork(adapter.broadcast)});
        return true;
    }

    InterfaceEntry interfaceEntry(std::uint32_t interfaceIndex) const override {
        std::array<char, IF_NAMESIZE> buffer{};
        if (if_indextoname(interfaceIndex, buffer.data()) == nullptr)
            return {};
        const std::string name = buffer.data();
        InterfaceEntry entry;
        entry.transmitLinkSpeed = static_cast<std::uint64_t>(platform::linkSpeed(name));
        entry.alias.assign(name.begin(), name.end());
        return entry;
    }
};

} // namespace

std::shared_ptr<HostNetwork> makeSystemNetwork() {
    return std::make_shared<LinuxNetwork>();
}

} // namespace host
