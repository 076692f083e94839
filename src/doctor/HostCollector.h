// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "doctor/HostEvidence.h"
#include "platform/EthernetSettings.h"

#include <filesystem>

namespace doctor {

/// Reads what HostEvidence has beside its links, of Linux: asks drivers, reads files below \p root,
/// and sends discovery and read commands to the cameras in its networks. Makes cameras that nobody
/// controls send test packets; their registers are as before then. Changes nothing else. Takes one
/// second, two where test packets do not arrive. On Windows it only says so in `unread`. Reentrant.
class HostCollector {
public:
    explicit HostCollector(std::filesystem::path root = "/",
                           platform::EthtoolCall ask = platform::askDriver);

    void read(HostEvidence& evidence) const;

private:
    void readAdapters(HostEvidence& evidence) const;
    void readLowerAdapters(HostEvidence& evidence) const;
    AdapterEvidence readAdapter(const std::string& name) const;

    const std::filesystem::path m_root;
    const platform::EthtoolCall m_ask;
};

/// All GigE Vision cameras that answer a broadcast, without their paths.
std::vector<NetworkCamera> findNetworkCameras();

/// Tests the ways from these cameras to this host, all at the same time; see gige::PathProbe.
void testPaths(std::vector<NetworkCamera>& cameras, const std::vector<AdapterEvidence>& adapters);

} // namespace doctor
