// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/AdapterReceivers.h"

#include "gvsp/PacketRing.h"

#include <utility>

#include <net/if.h>

namespace orv::aravis {

std::shared_ptr<StreamReceiver> AdapterReceivers::of(const std::string& adapter) {
    const std::lock_guard lock(m_mutex);
    std::weak_ptr<StreamReceiver>& known = m_receivers[if_nametoindex(adapter.c_str())];
    if (auto receiver = known.lock())
        return receiver;
    auto ring = gvsp::PacketRing::open(adapter);
    if (!ring)
        return nullptr;
    auto receiver = std::make_shared<StreamReceiver>(std::move(ring));
    known = receiver;
    return receiver;
}

} // namespace orv::aravis
