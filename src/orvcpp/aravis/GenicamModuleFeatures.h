// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/StreamCounts.h"
#include "orvcpp/aravis/discovery/CameraRecord.h"
#include "orvcpp/aravis/stream/StreamTransport.h"
#include "orvcpp/core/FeatureSet.h"
#include "orvcpp/core/MemoryTransportLayer.h"

#include <cstdint>
#include <functional>
#include <string>

namespace orv::aravis {

/// Features of the modules other than the camera, kept in this host's memory.

FeatureSet makeTransportLayerFeatures(const TransportLayerData& layer);
/// The interface through which \p camera is reached.
FeatureSet makeInterfaceFeatures(const CameraRecord& camera, const std::string& name);
FeatureSet makeLocalDeviceFeatures(const CameraRecord& camera, const std::string& id);

/// How a stream's features read and change the stream.
struct StreamControl {
    std::function<bool()> isStreaming;
    /// How the frames come in.
    std::function<StreamTransport()> transport;
    std::function<gvsp::StreamCounts()> counts;
    /// Whether the next acquisition receives headers only.
    std::function<bool()> headersOnly;
    std::function<void(bool)> setHeadersOnly;
    /// Bytes.
    std::function<OrvErrorType(std::int64_t& bytes)> packetSize;
    std::function<OrvErrorType(std::int64_t bytes)> setPacketSize;
    std::function<IntegerLimits()> packetSizeLimits;
    /// Finds the largest packet size that reaches this host, and sets it.
    std::function<OrvErrorType()> adjustPacketSize;
};

FeatureSet makeStreamFeatures(const CameraRecord& camera, StreamControl control);

} // namespace orv::aravis
