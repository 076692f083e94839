// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/discovery/CameraRecord.h"

#include <string>

namespace orv::aravis {

/// Whether frames of GigE cameras are taken from a packet socket, past the operating system's UDP.
enum class PacketSocket {
    /// Where the operating system permits it, and never from the loopback adapter, where such a
    /// socket sees every packet twice.
    Automatic,
    Never
};

/// How the frames of a camera come in.
struct StreamTransport {
    bool usesPacketSocket = false;
    /// Bytes that the operating system grants a UDP socket as its receive buffer.
    int receiveBuffer = 0;

    /// For the log.
    std::string description() const;
};

/// Bytes of receive buffer that are asked for.
constexpr int wantedReceiveBuffer = 32 * 1024 * 1024;

StreamTransport chooseStreamTransport(const CameraRecord& record, PacketSocket use);

} // namespace orv::aravis
