// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/FrameAssembly.h"
#include "orvcpp/aravis/discovery/CameraRecord.h"
#include "orvcpp/aravis/stream/AdapterReceivers.h"
#include "orvcpp/aravis/stream/CameraStream.h"
#include "platform/UdpSocket.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace orv::aravis {

/// The stream of a GigE Vision camera.
class GvspStream final : public CameraStream,
                         public PacketConsumer,
                         public gvsp::FrameAssembly::Output,
                         public std::enable_shared_from_this<GvspStream> {
public:
    struct Settings {
        /// Bytes of a frame.
        std::size_t payload = 0;
        /// The frames have no memory: only the headers of packets are received.
        bool headersOnly = false;
        /// The camera's number of the last frame of the acquisition before.
        std::optional<std::uint64_t> previousId;
        /// How the frames are to come in.
        StreamTransport transport;
    };

    /// open() fails for a camera without an adapter.
    GvspStream(CameraRecord camera, const Settings& settings,
               std::shared_ptr<AdapterReceivers> receivers, Delivery deliver);

    OrvErrorType open(ArvDevice* device) override;
    void close() override;
    void queue(std::shared_ptr<GenicamFrame> frame) override;
    std::chrono::milliseconds latency() const override;
    gvsp::StreamCounts counts() const override;
    StreamTransport transport() const override;
    std::optional<std::uint64_t> lastIdOfCamera() const override;

private:
    /// On the receiver's thread.
    void packet(const gvsp::StreamDatagram& datagram) override;
    void caughtUp() override;
    std::optional<std::chrono::steady_clock::time_point> due() const override;
    std::shared_ptr<gvsp::FrameBuffer> takeFrame() override;
    void deliver(std::shared_ptr<gvsp::FrameBuffer> frame) override;
    void request(const gvsp::ResendRequest& request) override;

    std::shared_ptr<StreamReceiver> makeReceiver(std::size_t packetSize);

    const CameraRecord m_camera;
    const Settings m_settings;
    const std::shared_ptr<AdapterReceivers> m_receivers;
    const Delivery m_deliver;
    const std::shared_ptr<platform::UdpSocket> m_socket = std::make_shared<platform::UdpSocket>();
    gvsp::StreamCounters m_counters;
    /// Made by open(), then used on the receiver's thread only.
    std::optional<gvsp::FrameAssembly> m_assembly;
    std::uint16_t m_requestId = 0;
    /// When the first packet of the round was taken; the clock costs more than a packet.
    std::optional<std::chrono::steady_clock::time_point> m_roundTime;
    /// The camera's number of the newest frame; 0 before the first.
    std::atomic<std::uint64_t> m_newestId{0};

    mutable std::mutex m_mutex;
    /// All below guarded by the mutex. The frame that was queued last is used first: its memory is
    /// most likely in the processor's cache.
    std::vector<std::shared_ptr<GenicamFrame>> m_free;
    std::shared_ptr<StreamReceiver> m_receiver;
    StreamTransport m_transport;
    /// What the source had dropped before the stream began, and, once it is closed, in all.
    gvsp::SourceCounts m_dropped;
    bool m_isClosed = false;
};

} // namespace orv::aravis
