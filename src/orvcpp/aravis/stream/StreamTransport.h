// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/discovery/CameraRecord.h"

#include <string>

namespace orv::aravis {

/// Whether frames of GigE cameras are received by a packet socket instead of a UDP socket.
enum class PacketSocket {
    /// Where the operating system permits it, except on the loopback adapter, where a packet socket
    /// receives every packet twice.
    Automatic,
    Never
};

/// How the frames of a camera are received.
struct StreamTransport {
    bool usesPacketSocket = false;
    /// Bytes that the operating system grants a UDP socket as its receive buffer.
    int receiveBuffer = 0;

    /// For the log.
    std::string description() const;
};

/// Receive buffer to request, in bytes.
constexpr int wantedReceiveBuffer = 32 * 1024 * 1024;

StreamTransport chooseStreamTransport(const CameraRecord& record, PacketSocket use);

} // namespace orv::aravis
