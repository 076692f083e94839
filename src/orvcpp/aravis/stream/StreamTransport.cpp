// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/StreamTransport.h"

#include "platform/HostCommands.h"
#include "platform/UdpSocket.h"

#include <net/ethernet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orv::aravis {

namespace {

bool permitsPacketSocket() {
    const int handle = socket(PF_PACKET, SOCK_RAW | SOCK_CLOEXEC, htons(ETH_P_ALL));
    if (handle < 0)
        return false;
    close(handle);
    return true;
}

int grantedReceiveBuffer() {
    const platform::UdpSocket socket;
    setsockopt(socket.handle(), SOL_SOCKET, SO_RCVBUF, &platform::streamReceiveBuffer,
               sizeof platform::streamReceiveBuffer);
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
        return "packet ring";
    return "UDP socket, receive buffer " + std::to_string(receiveBuffer / kilobyte) +
           " KB granted of " + std::to_string(platform::streamReceiveBuffer / kilobyte) +
           " KB asked for";
}

std::string StreamTransport::advice() const {
    if (usesPacketSocket)
        return {};
    std::string text;
    if (isPacketSocketRefused)
        text +=
            " To permit a packet ring: " + platform::packetSocketCommand(platform::programFile()) +
            '.';
    if (receiveBuffer < platform::streamReceiveBuffer)
        text += " To permit the whole buffer: " +
                platform::receiveBufferCommand(platform::streamReceiveBuffer) + '.';
    return text;
}

StreamTransport chooseStreamTransport(const CameraRecord& record, PacketSocket use) {
    StreamTransport transport;
    if (record.type != OrvTransportLayerTypeGEV)
        return transport;
    if (use == PacketSocket::Automatic) {
        transport.usesPacketSocket = permitsPacketSocket();
        transport.isPacketSocketRefused = !transport.usesPacketSocket;
    }
    transport.receiveBuffer = grantedReceiveBuffer();
    return transport;
}

} // namespace orv::aravis
