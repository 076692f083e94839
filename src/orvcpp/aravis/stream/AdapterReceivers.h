// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/stream/StreamReceiver.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace orv::aravis {

/// One receiver with a packet ring per adapter, shared by the streams that come through it. It is
/// made for the first and ends with the last. Thread-safe.
class AdapterReceivers {
public:
    /// Null when the system refuses a ring on \p adapter, see gvsp::PacketRing.
    std::shared_ptr<StreamReceiver> of(const std::string& adapter);

private:
    std::mutex m_mutex;
    /// By the adapter's index: a ring remains on an adapter that was removed, and an adapter that
    /// comes back with the same name gets another index. Guarded by the mutex.
    std::map<unsigned, std::weak_ptr<StreamReceiver>> m_receivers;
};

} // namespace orv::aravis
