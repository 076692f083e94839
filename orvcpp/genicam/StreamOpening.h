// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/genicam/Fault.h"
#include "orvcpp/genicam/GObjects.h"
#include "orvcpp/genicam/StreamPath.h"

namespace orv::genicam {

/// Opens a stream of the camera, on the device's thread, and before the camera acquires. A packet
/// socket that cannot be had clean is given up: \p path then tells of a UDP socket. Empty on a
/// failure.
GObjectPtr<ArvStream> openStream(ArvDevice* device, StreamPath& path, ArvStreamCallback callback,
                                 void* callbackData, Fault& fault);

} // namespace orv::genicam
