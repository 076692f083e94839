// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraHandler.h"

#include "features/BandwidthLimit.h"
#include "features/FeatureController.h"
#include "logging/Log.h"
#include "sdk/OrvFeatureWrapper.h"
#include "sdk/OrvStreamWrapper.h"

#include <algorithm>
#include <chrono>
#include <limits>

namespace {

constexpr std::uint64_t bitsPerMegabit = 1'000'000;
/// Bits per second of USB 2.
constexpr std::uint64_t usb2Speed = 480'000'000;
constexpr std::int64_t recommendedPacketSize = 6000;

/// Bits of a number of bytes, held to what 64 bits can carry; 0 for less than nothing.
std::uint64_t bitsOf(std::int64_t bytes) {
    constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max() / 8;
    return bytes > 0 ? std::min(static_cast<std::uint64_t>(bytes), largest) * 8 : 0;
}

/// Asks, without a pause, whether a command is done, until it is or the query fails, which is no
/// error; OrvErrorTimeout when neither happens in time.
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

void CameraHandler::checkUsbSpeedLimit() const {
    // A camera that is not open shows no features; its warning text says so already.
    if (m_info.transportLayerType != OrvTransportLayerTypeU3V || !m_openedHere)
        return;
    if (!findBandwidthLimit())
        return;
    const std::int64_t maximum = integerOf(m_bandwidthLimit->read().maximum).value_or(0);
    if (maximum > 0 && bitsOf(maximum) < usb2Speed)
        logWarning(displayName() + ": Camera Speed Limit: " +
                   std::to_string(bitsOf(maximum) / bitsPerMegabit) + " Mbps ( USB 2.0 or lower )");
}

void CameraHandler::checkLinkSpeed(std::uint64_t hostLinkSpeed) const {
    if (!m_openedHere)
        return;
    const std::uint64_t cameraSpeed =
        bitsOf(integerOf(featureValue("DeviceLinkSpeed")).value_or(0));
    if (hostLinkSpeed < cameraSpeed)
        logWarning("Host Interface Link Speed (" + std::to_string(hostLinkSpeed / bitsPerMegabit) +
                   "Mbps) is less than Camera Link Speed (" +
                   std::to_string(cameraSpeed / bitsPerMegabit) +
                   "Mbps). Please check your network topology.");
}

bool CameraHandler::isTriggered() const {
    if (hasFeature("TriggerMode") && textOf(featureValue("TriggerMode")) == "On") {
        const bool freerun =
            hasFeature("TriggerSource") && textOf(featureValue("TriggerSource")) == "Freerun";
        if (!freerun)
            return true;
    }
    if (!hasFeature("ExposureMode"))
        return false;
    const auto exposureMode = textOf(featureValue("ExposureMode"));
    return exposureMode && *exposureMode != "Timed";
}

bool CameraHandler::usesSocketDriver() const {
    if (!m_stream)
        return false;
    auto driver = std::make_shared<OrvFeatureWrapper>();
    OrvErrorType result = m_stream->GetFeatureByName("GVSPDriver", driver);
    if (result != OrvErrorSuccess) {
        logWarning(displayName() + ": Cannot get feature 'GVSPDriver'", result);
        return false;
    }
    std::string name;
    result = driver->GetValue(name);
    if (result != OrvErrorSuccess) {
        logWarning(displayName() + ": Cannot get value of 'GVSPDriver'", result);
        return false;
    }
    return name == "Socket";
}

void CameraHandler::checkDriver() {
    const std::string warning = "Socket driver in use, please use Filter Driver.";
    if (usesSocketDriver()) {
        m_warningText = warning;
        logWarning(displayName() + " is using Socket driver.");
    } else if (m_warningText == warning) {
        m_warningText.clear();
    }
}

bool CameraHandler::adjustPacketSize(bool enabled) {
    if (!enabled || m_packetSizeAdjusted || m_packetSizeStuck ||
        m_info.transportLayerType != OrvTransportLayerTypeGEV)
        return false;
    const bool streamsOverTcp =
        m_features->hasFeature(firstStreamModule, "GVSPProtocol") &&
        textOf(m_features->getFeatureValue(firstStreamModule, "GVSPProtocol")) == "TCP";
    if (streamsOverTcp)
        return false;
    m_packetSizeAdjusted = negotiatePacketSize();
    return m_packetSizeAdjusted;
}

bool CameraHandler::negotiatePacketSize() {
    if (!m_stream) {
        logError(displayName() + ": GigEAdjustPacketSize: invalid stream pointer.");
        return false;
    }
    if (!runPacketSizeCommand())
        return false;
    const auto bytes = readPacketSize();
    if (!bytes)
        return false;
    if (*bytes < recommendedPacketSize)
        logWarning(displayName() +
                   ": The current packet size is below the recommended value. This affects the "
                   "streaming performance. Please ensure jumbo frames are activated.");
    logInfo(displayName() + ": Adjust packet size, new value: " + std::to_string(*bytes) +
            " bytes.");
    return true;
}

bool CameraHandler::runPacketSizeCommand() {
    auto command = std::make_shared<OrvFeatureWrapper>();
    OrvErrorType result = m_stream->GetFeatureByName("GVSPAdjustPacketSize", command);
    if (result != OrvErrorSuccess) {
        logWarning(displayName() + ": Cannot get feature 'GVSPAdjustPacketSize'", result);
        return false;
    }
    result = command->RunCommand();
    if (result == OrvErrorSuccess) {
        result = waitUntilDone(*command, m_packetSizeLimit);
        m_packetSizeStuck = result == OrvErrorTimeout;
    }
    if (result != OrvErrorSuccess)
        logWarning(displayName() + ": Error while executing GVSPAdjustPacketSize", result);
    return result == OrvErrorSuccess;
}

std::optional<std::int64_t> CameraHandler::readPacketSize() const {
    auto feature = std::make_shared<OrvFeatureWrapper>();
    OrvErrorType result = m_stream->GetFeatureByName("GVSPPacketSize", feature);
    if (result != OrvErrorSuccess) {
        logWarning(displayName() + ": Cannot get feature 'GVSPPacketSize'", result);
        return std::nullopt;
    }
    std::int64_t bytes = 0;
    result = feature->GetValue(bytes);
    if (result != OrvErrorSuccess) {
        logWarning(displayName() + ": Cannot get value of 'GVSPPacketSize'", result);
        return std::nullopt;
    }
    return bytes;
}
