// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/device/DeviceConnection.h"
#include "orvcpp/aravis/stream/FrameIds.h"
#include "orvcpp/aravis/stream/GenicamFrame.h"
#include "orvcpp/aravis/stream/StreamTransport.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace orv::aravis {

/// One of the library's counts of a stream, by the name that the library gives it.
struct StreamCount {
    std::string name;
    std::int64_t value = 0;
};

/// One acquisition of an opened camera, from its preparation or start to its stop. Thread-safe.
/// Frames are delivered on the library's receiving thread, under a lock that only stop() waits for.
class Acquisition : public std::enable_shared_from_this<Acquisition> {
public:
    /// \p path is how the frames are to come in.
    Acquisition(std::shared_ptr<DeviceConnection> device, StreamTransport path);
    ~Acquisition();
    Acquisition(const Acquisition&) = delete;
    Acquisition& operator=(const Acquisition&) = delete;

    /// Opens the stream ahead of start(), which reopens an unusable one.
    void prepare();
    /// To be called once. \p previousId is the camera's number of the last frame of the acquisition
    /// before.
    OrvErrorType start(int bufferCount, std::shared_ptr<OrvCPP::IFrameObserver> observer,
                       std::optional<std::uint64_t> previousId);
    /// No frame is delivered any more once this has returned. Not to be called on the thread that
    /// delivers.
    void stop();
    /// Takes a frame back.
    OrvErrorType queue(GenicamFrame& frame);

    std::vector<StreamCount> counts() const;
    /// How the frames come in, once it has started.
    StreamTransport path() const;
    /// The camera's number of the last frame; known once the acquisition has stopped.
    std::optional<std::uint64_t> lastIdOfCamera() const;

private:
    static void onStream(void* acquisition, ArvStreamCallbackType type, ArvBuffer* buffer);

    /// On the device's thread.
    OrvErrorType startOn(ArvDevice* device, int bufferCount);
    OrvErrorType announceFrames(int bufferCount);
    OrvErrorType makeStream(ArvDevice* device);
    bool reusePrepared(ArvDevice* device) const;
    void endDelivery();
    /// On the library's thread.
    void bufferDone();
    void deliver(GenicamFrame& frame);

    const std::shared_ptr<DeviceConnection> m_device;
    /// Not reset while a frame is delivered.
    std::shared_ptr<OrvCPP::IFrameObserver> m_observer;
    std::size_t m_payload = 0;
    std::vector<std::shared_ptr<GenicamFrame>> m_frames;
    /// Of the thread that delivers, while there is one.
    std::optional<FrameIds> m_ids;
    std::optional<guint> m_mismatchInfo;
    std::uint64_t m_sizeMismatches = 0;

    std::atomic<bool> m_isStarted{false};
    std::atomic<bool> m_stopping{false};
    /// Held while a frame is delivered, so that stop() can wait for that. Taken before m_mutex.
    std::mutex m_delivery;
    mutable std::mutex m_mutex;
    /// This and the next two guarded by the mutex.
    StreamTransport m_path;
    int m_packetSize = 0;
    std::vector<StreamCount> m_lastCounts;
    /// Guarded by the mutex, and not reset while a frame is delivered. Declared last, so destroyed
    /// first: that ends the thread that uses the other members.
    GObjectPtr<ArvStream> m_stream;
};

/// Queues a frame to the acquisition that it came from. Thread-safe.
OrvErrorType queueFrame(const std::shared_ptr<OrvCPP::Frame>& frame);

} // namespace orv::aravis
