// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/stream/Acquisition.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace orv::aravis {

/// Holds the running acquisition of an opened camera, and what the next one takes from it.
/// Thread-safe.
class AcquisitionSlot {
public:
    /// \p transport is how the camera's frames are to come in.
    AcquisitionSlot(std::shared_ptr<DeviceConnection> device, StreamTransport transport,
                    std::shared_ptr<AdapterReceivers> receivers);

    /// The next acquisition, for the caller to start; counts as running from now on.
    std::shared_ptr<Acquisition> begin();
    /// Removes and answers the running acquisition; null when there is none.
    std::shared_ptr<Acquisition> end();
    /// Keeps the counts of an acquisition that was removed and has stopped.
    void keep(const Acquisition& stopped);

    bool isRunning() const { return acquisition() != nullptr; }
    /// Of the running acquisition, or of the one before.
    gvsp::StreamCounts counts() const;
    /// How the frames come in, or would if the camera were started.
    StreamTransport transport() const;
    /// Whether the next acquisition receives headers only.
    bool headersOnly() const;
    void setHeadersOnly(bool headersOnly);

private:
    std::shared_ptr<Acquisition> acquisition() const;

    const std::shared_ptr<DeviceConnection> m_device;
    mutable std::mutex m_mutex;
    /// All below guarded by the mutex.
    Acquisition::Settings m_next;
    std::shared_ptr<Acquisition> m_acquisition;
    gvsp::StreamCounts m_counts;
};

} // namespace orv::aravis
