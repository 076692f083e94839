// SPDX-License-Identifier: BSD-3-Clause
#include "doctor/HostCollector.h"

#include <utility>

namespace platform {

bool askDriver(const std::string&, void*) {
    return false;
}

} // namespace platform

namespace doctor {

HostCollector::HostCollector(std::filesystem::path root, platform::EthtoolCall ask)
    : m_root(std::move(root)), m_ask(std::move(ask)) {}

void HostCollector::read(HostEvidence& evidence) const {
    evidence.unread = "Adapters, addresses, memory and processors are checked on Linux only.";
}

} // namespace doctor
