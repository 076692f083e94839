// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/GvspStream.h"

#include "gige/BootstrapRegisters.h"
#include "gige/GvcpCommand.h"
#include "gvsp/UdpPackets.h"
#include "orvcpp/aravis/stream/StreamDestination.h"
#include "platform/Ipv4Address.h"
#include "platform/NetworkAdapters.h"

#include <linux/filter.h>
#include <sys/socket.h>

#include <utility>

namespace orv::aravis {

namespace {

/// Makes a socket refuse all packets, which come through the adapter's ring. The socket keeps the
/// port: without it, the kernel would tell the camera that nobody listens.
void refusePackets(const platform::UdpSocket& socket) {
    sock_filter refuse = BPF_STMT(BPF_RET | BPF_K, 0);
    const sock_fprog program{1, &refuse};
    setsockopt(socket.handle(), SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program);
}

gvsp::SourceCounts difference(const gvsp::SourceCounts& now, const gvsp::SourceCounts& before) {
    return {now.dropped - before.dropped, now.freezes - before.freezes};
}

} // namespace

GvspStream::GvspStream(CameraRecord camera, const Settings& settings,
                       std::shared_ptr<AdapterReceivers> receivers, Delivery deliver)
    : m_camera(std::move(camera)), m_settings(settings), m_receivers(std::move(receivers)),
      m_deliver(std::move(deliver)), m_transport(settings.transport) {}

OrvErrorType GvspStream::open(ArvDevice* device) {
    if (!m_camera.adapter || !m_socket->bindTo(m_camera.adapter->address, 0))
        return OrvErrorResources;
    if (const OrvErrorType error = directStream(device, *m_socket); error != OrvErrorSuccess)
        return error;
    gvsp::FrameAssembly::Settings assembly;
    assembly.payload = m_settings.payload;
    assembly.packetSize = readPacketSize(device);
    assembly.tickFrequency = readTickFrequency(device);
    assembly.canRequest = canResend(device);
    assembly.previousId = m_settings.previousId;
    if (assembly.packetSize <=
        gvsp::ipAndUdpSize + gvsp::extendedHeaderSize + gvsp::multiPartHeaderSize)
        return OrvErrorInvalidValue;
    m_assembly.emplace(assembly, *this, m_counters);

    const auto receiver = makeReceiver(assembly.packetSize);
    const gvsp::SourceCounts before = receiver->counts();
    {
        const std::lock_guard lock(m_mutex);
        if (m_isClosed)
            return OrvErrorInvalidCall;
        m_receiver = receiver;
        m_dropped = before;
    }
    receiver->add(
        {m_camera.address, m_socket->localAddress(), m_socket->localPort(), m_settings.headersOnly},
        shared_from_this());
    return OrvErrorSuccess;
}

std::shared_ptr<StreamReceiver> GvspStream::makeReceiver(std::size_t packetSize) {
    // The ring does not join the fragments of a packet that is larger than the adapter's; a camera
    // that splits packets in spite of its setting needs a UDP socket.
    const std::int64_t mtu = platform::mtu(m_camera.adapter->name);
    const bool isWhole = mtu == 0 || packetSize <= static_cast<std::size_t>(mtu);
    auto shared = m_settings.transport.usesPacketSocket && isWhole
                      ? m_receivers->of(m_camera.adapter->name)
                      : nullptr;
    if (shared) {
        refusePackets(*m_socket);
        return shared;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_transport.usesPacketSocket = false;
    }
    m_socket->set(SOL_SOCKET, SO_RCVBUF, platform::streamReceiveBuffer);
    return std::make_shared<StreamReceiver>(
        std::make_unique<gvsp::UdpPackets>(m_socket, packetSize - gvsp::ipAndUdpSize));
}

void GvspStream::close() {
    std::shared_ptr<StreamReceiver> receiver;
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        receiver.swap(m_receiver);
        m_free.clear();
        if (receiver)
            m_dropped = difference(receiver->counts(), m_dropped);
    }
    if (receiver)
        receiver->remove(*this);
}

void GvspStream::queue(std::shared_ptr<GenicamFrame> frame) {
    const std::lock_guard lock(m_mutex);
    if (!m_isClosed)
        m_free.push_back(std::move(frame));
}

std::chrono::milliseconds GvspStream::latency() const {
    const std::lock_guard lock(m_mutex);
    return m_receiver ? m_receiver->latency() : std::chrono::milliseconds(0);
}

gvsp::StreamCounts GvspStream::counts() const {
    gvsp::StreamCounts counts = m_counters.now();
    const std::lock_guard lock(m_mutex);
    const gvsp::SourceCounts dropped =
        m_receiver ? difference(m_receiver->counts(), m_dropped) : m_dropped;
    counts.packetsDropped = dropped.dropped;
    counts.ringFreezes = dropped.freezes;
    return counts;
}

StreamTransport GvspStream::transport() const {
    const std::lock_guard lock(m_mutex);
    return m_transport;
}

std::optional<std::uint64_t> GvspStream::lastIdOfCamera() const {
    const std::uint64_t id = m_newestId;
    return id == 0 ? std::nullopt : std::optional(id);
}

void GvspStream::packet(const gvsp::StreamDatagram& datagram) {
    if (!m_roundTime)
        m_roundTime = std::chrono::steady_clock::now();
    m_assembly->packet(datagram.data, datagram.captured, datagram.size, *m_roundTime);
}

void GvspStream::caughtUp() {
    m_roundTime.reset();
    m_assembly->advance(std::chrono::steady_clock::now());
    m_newestId = m_assembly->newestId().value_or(0);
}

std::optional<std::chrono::steady_clock::time_point> GvspStream::due() const {
    return m_assembly->due();
}

std::shared_ptr<gvsp::FrameBuffer> GvspStream::takeFrame() {
    const std::lock_guard lock(m_mutex);
    if (m_free.empty())
        return nullptr;
    auto frame = std::move(m_free.back());
    m_free.pop_back();
    return frame;
}

void GvspStream::deliver(std::shared_ptr<gvsp::FrameBuffer> frame) {
    // takeFrame() handed it out.
    m_deliver(std::static_pointer_cast<GenicamFrame>(std::move(frame)));
}

void GvspStream::request(const gvsp::ResendRequest& request) {
    // 0 is no ID of a request.
    m_requestId = static_cast<std::uint16_t>(m_requestId == 0xFFFF ? 1 : m_requestId + 1);
    const std::vector<std::uint8_t> command =
        gige::resendCommand(request.block, request.hasExtendedIds, request.packets.first,
                            request.packets.last, m_requestId);
    const sockaddr_in camera = platform::socketAddress(m_camera.address, gige::controlPort);
    sendto(m_socket->handle(), command.data(), command.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
           reinterpret_cast<const sockaddr*>(&camera), sizeof camera);
}

} // namespace orv::aravis
