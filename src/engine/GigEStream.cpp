// SPDX-License-Identifier: BSD-3-Clause
#include "engine/GigEStream.h"

#include "logging/Log.h"
#include "sdk/OrvFeatureWrapper.h"
#include "sdk/OrvStreamWrapper.h"

#include <utility>

namespace {

constexpr std::int64_t recommendedPacketSize = 6000;

/// Polls without a pause. Returns OrvErrorSuccess when the command is done or a query fails,
/// OrvErrorTimeout when neither happens within \p limit.
OrvErrorType waitUntilDone(const OrvFeatureWrapper& command, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    bool done = false;
    while (command.IsCommandDone(done) == OrvErrorSuccess && !done) {
        if (std::chrono::steady_clock::now() >= end)
            return OrvErrorTimeout;
    }
    return OrvErrorSuccess;
}

} // namespace

GigEStream::GigEStream(std::shared_ptr<OrvStreamWrapper> stream, std::string cameraName,
                       std::chrono::milliseconds packetSizeLimit)
    : m_stream(std::move(stream)), m_cameraName(std::move(cameraName)),
      m_packetSizeLimit(packetSizeLimit) {}

bool GigEStream::usesSocketDriver() const {
    return read<std::string>("GVSPDriver") == "Socket";
}

void GigEStream::setHeadersOnly(bool headersOnly) const {
    auto feature = std::make_shared<OrvFeatureWrapper>();
    if (m_stream->GetFeatureByName("GVSPHeadersOnly", feature) == OrvErrorSuccess)
        feature->SetValue(headersOnly);
}

bool GigEStream::negotiatePacketSize() {
    if (m_stuck || !runNegotiation())
        return false;
    const auto bytes = read<std::int64_t>("GVSPPacketSize");
    if (!bytes)
        return false;
    if (*bytes < recommendedPacketSize)
        logWarning(m_cameraName +
                   ": The current packet size is below the recommended value. This affects the "
                   "streaming performance. Please ensure jumbo frames are activated.");
    logInfo(m_cameraName + ": Adjust packet size, new value: " + std::to_string(*bytes) +
            " bytes.");
    return true;
}

bool GigEStream::runNegotiation() {
    const auto command = find("GVSPAdjustPacketSize");
    if (!command)
        return false;
    OrvErrorType result = command->RunCommand();
    if (result == OrvErrorSuccess) {
        result = waitUntilDone(*command, m_packetSizeLimit);
        m_stuck = result == OrvErrorTimeout;
    }
    if (result != OrvErrorSuccess)
        logWarning(m_cameraName + ": Error while executing GVSPAdjustPacketSize", result);
    return result == OrvErrorSuccess;
}

std::shared_ptr<OrvFeatureWrapper> GigEStream::find(const char* feature) const {
    auto found = std::make_shared<OrvFeatureWrapper>();
    const OrvErrorType result = m_stream->GetFeatureByName(feature, found);
    if (result == OrvErrorSuccess)
        return found;
    logWarning(m_cameraName + ": Cannot get feature '" + feature + "'", result);
    return {};
}

template <typename Value> std::optional<Value> GigEStream::read(const char* feature) const {
    const auto found = find(feature);
    if (!found)
        return std::nullopt;
    Value value{};
    const OrvErrorType result = found->GetValue(value);
    if (result == OrvErrorSuccess)
        return value;
    logWarning(m_cameraName + ": Cannot get value of '" + feature + "'", result);
    return std::nullopt;
}
