// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/GObjects.h"
#include "orvcpp/aravis/stream/CameraStream.h"
#include "orvcpp/aravis/stream/FrameIds.h"

#include <map>
#include <mutex>

namespace orv::aravis {

/// The stream of a USB3 Vision camera, received by Aravis.
class LibraryStream final : public CameraStream {
public:
    /// \p payload is the size of a frame in bytes; \p previousId the camera's number of the last
    /// frame of the acquisition before.
    LibraryStream(std::size_t payload, std::optional<std::uint64_t> previousId, Delivery deliver)
        : m_payload(payload), m_deliver(std::move(deliver)), m_ids(previousId) {}
    ~LibraryStream() override;

    OrvErrorType open(ArvDevice* device) override;
    void close() override;
    void queue(std::shared_ptr<GenicamFrame> frame) override;
    std::chrono::milliseconds latency() const override { return std::chrono::milliseconds(0); }
    gvsp::StreamCounts counts() const override;
    StreamTransport transport() const override { return {}; }
    std::optional<std::uint64_t> lastIdOfCamera() const override;

private:
    static void onStream(void* stream, ArvStreamCallbackType type, ArvBuffer* buffer);
    void bufferDone();
    gvsp::FrameContents contentsOf(ArvBuffer* buffer);

    /// A frame and the library's description of its memory.
    struct Buffer {
        std::shared_ptr<GenicamFrame> frame;
        GObjectPtr<ArvBuffer> buffer;
    };

    const std::size_t m_payload;
    const Delivery m_deliver;
    mutable std::mutex m_mutex;
    /// All below guarded by the mutex.
    FrameIds m_ids;
    gvsp::StreamCounts m_lastCounts;
    std::map<const GenicamFrame*, Buffer> m_buffers;
    /// Destroyed first: that ends the thread that uses the other members.
    GObjectPtr<ArvStream> m_stream;
};

} // namespace orv::aravis
