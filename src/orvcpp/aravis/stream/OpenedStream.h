// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/GObjects.h"
#include "orvcpp/aravis/LibraryError.h"
#include "orvcpp/aravis/stream/StreamTransport.h"

namespace orv::aravis {

/// A stream, and what the library keeps of the camera's settings as they were when it was opened.
struct OpenedStream {
    GObjectPtr<ArvStream> stream;
    /// Bytes; 0 for a USB camera.
    int packetSize = 0;
};

/// Opens a stream of the camera, on the device's thread, and before the camera acquires. A packet
/// socket that cannot be had clean is given up: \p path then tells of a UDP socket. Without a
/// stream on a failure.
OpenedStream openStream(ArvDevice* device, StreamTransport& path, ArvStreamCallback callback,
                        void* callbackData, LibraryError& failure);

/// Makes the camera send to a stream that was opened some time ago, on the device's thread. False
/// when that stream does not do any more: it is not clean, or the size of packets has changed.
bool reuseStream(ArvDevice* device, ArvStream* stream, int packetSize, const StreamTransport& path);

} // namespace orv::aravis
