// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/device/DeviceConnection.h"
#include "orvcpp/aravis/stream/AdapterReceivers.h"
#include "orvcpp/aravis/stream/CameraStream.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace orv::aravis {

/// One acquisition of an opened camera, from its start to its stop. Thread-safe. Frames are
/// delivered on the stream's thread, which the GigE cameras of an adapter share with a packet ring,
/// under a lock that only stop() waits for.
class Acquisition : public std::enable_shared_from_this<Acquisition> {
public:
    struct Settings {
        /// How the frames of a GigE camera are to come in.
        StreamTransport transport;
        std::shared_ptr<AdapterReceivers> receivers;
        /// The frames of a GigE camera have no images: only the headers of packets are received.
        bool headersOnly = false;
        /// The camera's number of the last frame of the acquisition before.
        std::optional<std::uint64_t> previousId;
    };

    Acquisition(std::shared_ptr<DeviceConnection> device, Settings settings);
    ~Acquisition();
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

    /// To be called once.
    OrvErrorType start(int bufferCount, std::shared_ptr<OrvCPP::IFrameObserver> observer);
    /// No frame is delivered any more once this has returned. Not to be called on the thread that
    /// delivers.
    void stop();
    /// Takes a frame back.
    OrvErrorType queue(const std::shared_ptr<GenicamFrame>& frame);

    gvsp::StreamCounts counts() const;
    /// How the frames come in, or would if it were started.
    StreamTransport transport() const;
    /// The camera's number of the last frame; known once the acquisition has stopped.
    std::optional<std::uint64_t> lastIdOfCamera() const;

private:
    /// On the device's thread.
    OrvErrorType startOn(ArvDevice* device, int bufferCount);
    OrvErrorType announceFrames(std::size_t payload, int bufferCount);
    std::shared_ptr<CameraStream> makeStream(std::size_t payload);
    std::shared_ptr<CameraStream> stream() const;
    OrvErrorType stopCamera();
    void endDelivery();
    void deliver(const std::shared_ptr<GenicamFrame>& frame);

    const std::shared_ptr<DeviceConnection> m_device;
    const Settings m_settings;
    /// Not reset while a frame is delivered.
    std::shared_ptr<OrvCPP::IFrameObserver> m_observer;
    std::vector<std::shared_ptr<GenicamFrame>> m_frames;
    std::atomic<bool> m_isStarted{false};
    std::atomic<bool> m_stopping{false};
    /// Held while a frame is delivered, so that stop() can wait for that. Taken before m_mutex.
    std::mutex m_delivery;
    mutable std::mutex m_mutex;
    /// This and the next one guarded by the mutex.
    std::shared_ptr<CameraStream> m_stream;
    bool m_isOver = false;
};

/// Queues a frame to the acquisition that it came from. Thread-safe.
OrvErrorType queueFrame(const std::shared_ptr<OrvCPP::Frame>& frame);

} // namespace orv::aravis
