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

/// The acquisitions of an opened camera: the running one, if there is one, or one that is prepared.
/// Thread-safe.
class AcquisitionSlot {
public:
    /// \p path is how the camera's frames are to come in.
    AcquisitionSlot(std::shared_ptr<DeviceConnection> device, StreamTransport path);

    /// Opens the stream of the next acquisition, where that is worth the while: for a packet
    /// socket, see AdapterStreams. Waits for the camera, but not long.
    void prepare();
    /// Lets go of what was prepared.
    void discard();
    /// discard(), for good.
    void close();

    /// An acquisition that counts as running from here on, and that the caller starts.
    std::shared_ptr<Acquisition> begin();
    /// Takes the running acquisition; empty when there is none.
    std::shared_ptr<Acquisition> end();
    /// To be called when the acquisition that was ended has stopped.
    void keep(const Acquisition& stopped);

    bool isRunning() const { return acquisition() != nullptr; }
    /// Whether packets may come: it runs, and the camera is not lost.
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
