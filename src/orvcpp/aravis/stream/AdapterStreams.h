// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/stream/AcquisitionSlot.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orv::aravis {

/// Opens the streams of all cameras of an adapter before the first of them streams. A packet socket
/// of the library hears for about a millisecond what arrives for others, which spoils it: none can
/// be had once a camera of the adapter streams at speed. Thread-safe.
class AdapterStreams {
public:
    /// A camera was opened.
    void add(const std::shared_ptr<AcquisitionSlot>& camera);
    /// To be called before a camera starts. Waits until the streams are open, a fraction of a
    /// second, but for nothing while another camera of the adapter streams.
    void aboutToStart(const AcquisitionSlot& starting);
    /// To be called when a camera has stopped: with the last one of an adapter, what was prepared
    /// and not used is let go.
    void stopped(const AcquisitionSlot& camera);

private:
    std::vector<std::shared_ptr<AcquisitionSlot>> camerasOf(const std::string& adapter) const;

    /// Held while streams are opened, so that a second camera that starts finds its own prepared.
    std::mutex m_mutex;
    /// Guarded by the mutex.
    std::vector<std::weak_ptr<AcquisitionSlot>> m_cameras;
};

} // namespace orv::aravis
