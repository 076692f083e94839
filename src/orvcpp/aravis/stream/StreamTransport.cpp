// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/StreamTransport.h"

#include "platform/UdpSocket.h"

#include <net/ethernet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orv::aravis {

namespace {

/// Bytes of the library's packet ring. Without all of it there is no packet socket.
constexpr int packetRing = 32 * 1024 * 1024;

/// As the library does when a stream opens; it uses a UDP socket on a failure.
bool permitsPacketSocket() {
    const int handle = socket(PF_PACKET, SOCK_RAW | SOCK_CLOEXEC, htons(ETH_P_ALL));
    if (handle < 0)
        return false;
    close(handle);
    return true;
}

int grantedReceiveBuffer() {
    const platform::UdpSocket socket;
    setsockopt(socket.handle(), SOL_SOCKET, SO_RCVBUF, &wantedReceiveBuffer,
               sizeof wantedReceiveBuffer);
    int granted = 0;
    socklen_t size = sizeof granted;
    getsockopt(socket.handle(), SOL_SOCKET, SO_RCVBUF, &granted, &size);
    // The kernel doubles what it grants, for its own bookkeeping.
    return granted / 2;
}

} // namespace

std::string StreamTransport::description() const {
    constexpr int kilobyte = 1024;
    if (usesPacketSocket)
        return "packet socket, ring of " + std::to_string(packetRing / kilobyte) + " KB";
    return "UDP socket, receive buffer " + std::to_string(receiveBuffer / kilobyte) +
           " KB granted of " + std::to_string(wantedReceiveBuffer / kilobyte) + " KB asked for";
}

StreamTransport chooseStreamTransport(const CameraRecord& record, PacketSocket use) {
    StreamTransport path;
    if (record.type != OrvTransportLayerTypeGEV)
        return path;
    const bool isLoopback = record.adapter && record.adapter->isLoopback;
    path.usesPacketSocket = use == PacketSocket::Automatic && !isLoopback && permitsPacketSocket();
    path.receiveBuffer = grantedReceiveBuffer();
    return path;
}

} // namespace orv::aravis
