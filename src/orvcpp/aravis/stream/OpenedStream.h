// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/GObjects.h"
#include "orvcpp/aravis/LibraryError.h"
#include "orvcpp/aravis/stream/StreamTransport.h"

namespace orv::aravis {

/// A library stream, and the packet size with which it was opened.
struct OpenedStream {
    GObjectPtr<ArvStream> stream;
    /// Bytes; 0 for a USB camera.
    int packetSize = 0;
};

/// Opens a stream of the camera. On the device's thread, before the acquisition starts. Falls back
/// to a UDP socket, and sets \p path so, when each packet socket has received other cameras'
/// packets. The stream is null on a failure.
OpenedStream openStream(ArvDevice* device, StreamTransport& path, ArvStreamCallback callback,
                        void* callbackData, LibraryError& failure);

/// Makes the camera send to a stream that was opened before. On the device's thread. False when the
/// stream has received other cameras' packets or the packet size has changed.
bool reuseStream(ArvDevice* device, ArvStream* stream, int packetSize, const StreamTransport& path);

} // namespace orv::aravis
