// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace host {
class HostNetwork;
}

/// The host's IPv4 network adapters and their link speeds, as they were when this was made.
/// Bound to the GUI thread.
class InterfaceHandlerGigE {
public:
    /// An empty \p network is replaced by the operating system's.
    explicit InterfaceHandlerGigE(std::shared_ptr<host::HostNetwork> network = {});

    /// Bits per second of the adapter with this IPv4 address (host byte order: 192.168.1.10 is
    /// 0xC0A8010A); 0 when there is none. Of two adapters with one address the first counts.
    virtual std::uint64_t GetLinkSpeed(std::uint64_t address) const;

private:
    struct Adapter;
    std::vector<Adapter> m_adapters;
};
