// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/StreamCounts.h"
#include "orvcpp/aravis/stream/GenicamFrame.h"
#include "orvcpp/aravis/stream/StreamTransport.h"

#include <arv.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace orv::aravis {

/// Receives the frames of one acquisition. Thread-safe.
class CameraStream {
public:
    /// Takes a frame that has been received; called on a thread of the stream.
    using Delivery = std::function<void(std::shared_ptr<GenicamFrame>)>;

    CameraStream() = default;
    virtual ~CameraStream() = default;
    CameraStream(const CameraStream&) = delete;
    CameraStream& operator=(const CameraStream&) = delete;

    /// Makes the camera send its frames here once it starts. To be called once, on the device's
    /// thread.
    virtual OrvErrorType open(ArvDevice* device) = 0;
    /// Ends the stream. May return before a running delivery does. Takes seconds for a lost USB
    /// camera. On the device's thread.
    virtual void close() = 0;
    /// Takes a frame to be filled.
    virtual void queue(std::shared_ptr<GenicamFrame> frame) = 0;

    /// Longest time from the arrival of a frame until its delivery, once the stream is open.
    virtual std::chrono::milliseconds latency() const = 0;
    virtual gvsp::StreamCounts counts() const = 0;
    /// How the frames come in, once it is open.
    virtual StreamTransport transport() const = 0;
    /// The camera's number of the last frame.
    virtual std::optional<std::uint64_t> lastIdOfCamera() const = 0;
};

} // namespace orv::aravis
