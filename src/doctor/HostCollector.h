// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "doctor/HostEvidence.h"
#include "platform/EthernetSettings.h"

#include <filesystem>

namespace doctor {

/// Reads what HostEvidence has beside its links, of Linux: asks drivers, reads files below \p root,
/// and sends discovery and read commands to the cameras in its networks. Changes nothing. Takes
/// about a second. On Windows it only says so in `unread`. Reentrant.
class HostCollector {
public:
    explicit HostCollector(std::filesystem::path root = "/",
                           platform::EthtoolCall ask = platform::askDriver);

    void read(HostEvidence& evidence) const;

private:
    void readAdapters(HostEvidence& evidence) const;
    AdapterEvidence readAdapter(const std::string& name) const;

    const std::filesystem::path m_root;
    const platform::EthtoolCall m_ask;
};

/// All GigE Vision cameras that answer a broadcast.
std::vector<NetworkCamera> findNetworkCameras();

} // namespace doctor
