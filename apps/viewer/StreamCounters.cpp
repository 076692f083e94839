// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/StreamCounters.h"

#include "OrvCPP/Camera.h"
#include "OrvCPP/Feature.h"
#include "OrvCPP/Stream.h"
#include "sdk/SdkQuery.h"

namespace viewer {

namespace {

std::optional<std::uint64_t> count(const OrvCPP::Stream& stream, const char* name) {
    std::shared_ptr<OrvCPP::Feature> feature;
    std::int64_t value = 0;
    if (stream.GetFeatureByName(name, feature) != OrvErrorSuccess || !feature ||
        feature->GetValue(value) != OrvErrorSuccess || value < 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(value);
}

} // namespace

std::optional<StreamCounters> readStreamCounters(const OrvCPP::Camera& camera) {
    std::vector<std::shared_ptr<OrvCPP::Stream>> streams;
    SdkQuery::elements(&camera, streams, &OrvCPP::Camera::GetStreams);
    if (streams.empty() || !streams.front())
        return std::nullopt;
    const OrvCPP::Stream& stream = *streams.front();
    const auto bytes = count(stream, "StreamDeliveredByteCount");
    if (!bytes)
        return std::nullopt;
    return StreamCounters{*bytes, count(stream, "StreamLostFrameCount").value_or(0) +
                                      count(stream, "StreamIncompleteFrameCount").value_or(0)};
}

} // namespace viewer
