// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/stream/Acquisition.h"
#include "orvcpp/aravis/stream/StreamTransport.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace orv::aravis {

/// Holds the running acquisition of an opened camera, or the prepared one. Thread-safe.
class AcquisitionSlot {
public:
    /// \p path is how the camera's frames are to come in.
    AcquisitionSlot(std::shared_ptr<DeviceConnection> device, StreamTransport path);

    /// Opens the stream of the next acquisition if it uses a packet socket (see AdapterStreams).
    /// Waits for the camera, at most a second.
    void prepare();
    /// Closes the prepared stream.
    void discard();
    /// discard(); later calls of prepare() do nothing.
    void close();

    /// The next acquisition, for the caller to start; counts as running from now on.
    std::shared_ptr<Acquisition> begin();
    /// Removes and answers the running acquisition; null when there is none.
    std::shared_ptr<Acquisition> end();
    /// Keeps the counts of an acquisition that was removed and has stopped.
    void keep(const Acquisition& stopped);

    bool isRunning() const { return acquisition() != nullptr; }
    /// Whether packets may arrive: an acquisition runs and the camera is not lost.
    bool mayReceive() const { return isRunning() && !m_device->isLost(); }
    /// One of the library's counts of the running acquisition, or of the one before.
    std::int64_t count(const std::string& name) const;
    std::optional<std::uint64_t> previousId() const;
    /// How the frames come in, or would if the camera were started.
    StreamTransport path() const;
    /// Name of the adapter that the frames come through; empty for a USB camera.
    std::string adapter() const;

private:
    std::shared_ptr<Acquisition> acquisition() const;

    const std::shared_ptr<DeviceConnection> m_device;
    const StreamTransport m_path;
    mutable std::mutex m_mutex;
    /// All below guarded by the mutex.
    std::shared_ptr<Acquisition> m_acquisition;
    std::shared_ptr<Acquisition> m_prepared;
    bool m_isClosed = false;
    std::vector<StreamCount> m_counts;
    std::optional<std::uint64_t> m_previousId;
};

} // namespace orv::aravis
