// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/stream/AcquisitionSlot.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orv::aravis {

/// Opens the streams of all cameras of an adapter before the first of them streams. A new packet
/// socket of the library receives other cameras' packets for about a millisecond, which makes it
/// unusable, so it cannot be opened while another camera of the adapter streams. Thread-safe.
class AdapterStreams {
public:
    /// A camera was opened.
    void add(const std::shared_ptr<AcquisitionSlot>& camera);
    /// To be called before a camera starts. Waits until the streams are open, a fraction of a
    /// second. Does nothing while another camera of the adapter streams.
    void aboutToStart(const AcquisitionSlot& starting);
    /// To be called when a camera has stopped. After the last one of an adapter, closes the streams
    /// that were prepared and not used.
    void stopped(const AcquisitionSlot& camera);

private:
    std::vector<std::shared_ptr<AcquisitionSlot>> camerasOf(const std::string& adapter) const;

    /// Held while streams are opened, so that a second camera that starts waits for its own.
    std::mutex m_mutex;
    /// Guarded by the mutex.
    std::vector<std::weak_ptr<AcquisitionSlot>> m_cameras;
};

} // namespace orv::aravis
