// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/genicam/StreamOpening.h"

#include <chrono>
#include <thread>

namespace orv::genicam {

namespace {

/// Opening one takes some 50 ms.
constexpr int packetSocketAttempts = 3;
/// A packet socket hands over what it has received after 5 ms; the rest is for a busy machine.
constexpr auto handOverTime = std::chrono::milliseconds(40);

/// For about a millisecond, until the library has set its filter, a packet socket hears what other
/// cameras send. The library takes the first packet that it hears for the camera's own and from
/// then on ignores up to a hundred frames with lower numbers: a camera that starts while another
/// one streams would deliver nothing for seconds.
bool hasHeardOthers(ArvStream* stream) {
    std::this_thread::sleep_for(handOverTime);
    return arv_stream_get_info_uint64_by_name(stream, "n_received_packets") > 0;
}

GObjectPtr<ArvStream> open(ArvDevice* device, const StreamPath& path, ArvStreamCallback callback,
                           void* callbackData, Fault& fault) {
    if (ARV_IS_GV_DEVICE(device))
        arv_gv_device_set_stream_options(ARV_GV_DEVICE(device),
                                         path.usesPacketSocket
                                             ? ARV_GV_STREAM_OPTION_NONE
                                             : ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
    GObjectPtr<ArvStream> stream(
        arv_device_create_stream(device, callback, callbackData, fault.out()));
    if (stream && ARV_IS_GV_STREAM(stream.get()))
        g_object_set(stream.get(), "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_FIXED,
                     "socket-buffer-size", wantedReceiveBuffer, nullptr);
    return stream;
}

} // namespace

GObjectPtr<ArvStream> openStream(ArvDevice* device, StreamPath& path, ArvStreamCallback callback,
                                 void* callbackData, Fault& fault) {
    for (int i = 0; path.usesPacketSocket && i < packetSocketAttempts; ++i) {
        GObjectPtr<ArvStream> stream = open(device, path, callback, callbackData, fault);
        if (!stream || !hasHeardOthers(stream.get()))
            return stream;
    }
    path.usesPacketSocket = false;
    return open(device, path, callback, callbackData, fault);
}

} // namespace orv::genicam
