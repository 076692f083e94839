// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/OpenedStream.h"

#include <chrono>
#include <thread>

namespace orv::aravis {

namespace {

/// Each takes about 50 ms.
constexpr int packetSocketAttempts = 3;
/// A packet socket delivers received packets after 5 ms; the rest is reserve for a busy machine.
constexpr auto handOverTime = std::chrono::milliseconds(40);

/// For about a millisecond, until the library sets its filter, a packet socket receives other
/// cameras' packets. The library takes the first packet for the camera's own and then ignores up to
/// a hundred frames with lower numbers. A camera that starts while another one streams would
/// deliver nothing for seconds.
bool hasHeardOthers(ArvStream* stream) {
    return arv_stream_get_info_uint64_by_name(stream, "n_received_packets") > 0;
}

int readPacketSize(ArvDevice* device) {
    LibraryError failure;
    return ARV_IS_GV_DEVICE(device) ? static_cast<int>(arv_gv_device_get_packet_size(
                                          ARV_GV_DEVICE(device), failure.out()))
                                    : 0;
}

OpenedStream open(ArvDevice* device, const StreamTransport& path, ArvStreamCallback callback,
                  void* callbackData, LibraryError& failure) {
    if (ARV_IS_GV_DEVICE(device))
        arv_gv_device_set_stream_options(ARV_GV_DEVICE(device),
                                         path.usesPacketSocket
                                             ? ARV_GV_STREAM_OPTION_NONE
                                             : ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
    OpenedStream opened;
    opened.stream.reset(arv_device_create_stream(device, callback, callbackData, failure.out()));
    opened.packetSize = readPacketSize(device);
    // With a packet socket, the library also opens a UDP socket and never reads it: a large buffer
    // would only hold unread packets.
    if (opened.stream && ARV_IS_GV_STREAM(opened.stream.get()) && !path.usesPacketSocket)
        g_object_set(opened.stream.get(), "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_FIXED,
                     "socket-buffer-size", wantedReceiveBuffer, nullptr);
    return opened;
}

} // namespace

OpenedStream openStream(ArvDevice* device, StreamTransport& path, ArvStreamCallback callback,
                        void* callbackData, LibraryError& failure) {
    for (int i = 0; path.usesPacketSocket && i < packetSocketAttempts; ++i) {
        OpenedStream opened = open(device, path, callback, callbackData, failure);
        if (!opened.stream)
            return opened;
        std::this_thread::sleep_for(handOverTime);
        if (!hasHeardOthers(opened.stream.get()))
            return opened;
    }
    path.usesPacketSocket = false;
    return open(device, path, callback, callbackData, failure);
}

bool reuseStream(ArvDevice* device, ArvStream* stream, int packetSize,
                 const StreamTransport& path) {
    if (!ARV_IS_GV_STREAM(stream) || readPacketSize(device) != packetSize ||
        (path.usesPacketSocket && hasHeardOthers(stream)))
        return false;
    // The search for the largest packet size has changed the camera's destination port.
    LibraryError failure;
    arv_device_set_integer_feature_value(
        device, "ArvGevSCPHostPort", arv_gv_stream_get_port(ARV_GV_STREAM(stream)), failure.out());
    return failure.code() == OrvErrorSuccess;
}

} // namespace orv::aravis
