// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraHandler.h"

#include "engine/GigEStream.h"
#include "features/BandwidthLimit.h"
#include "features/FeatureController.h"
#include "logging/Log.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::uint64_t bitsPerMegabit = 1'000'000;
/// Bits per second of USB 2.
constexpr std::uint64_t usb2Speed = 480'000'000;

/// Bits of a number of bytes, limited to 64 bits; 0 for a negative number.
std::uint64_t bitsOf(std::int64_t bytes) {
    constexpr std::uint64_t mostBytes = std::numeric_limits<std::uint64_t>::max() / 8;
    return bytes > 0 ? std::min(static_cast<std::uint64_t>(bytes), mostBytes) * 8 : 0;
}

} // namespace

void CameraHandler::checkUsbSpeedLimit() const {
    // A camera that is not open has no features.
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

void CameraHandler::checkDriver() {
    const std::string warning = "Socket driver in use, please use Filter Driver.";
    if (m_stream && m_stream->usesSocketDriver()) {
        m_warningText = warning;
        logWarning(displayName() + " is using Socket driver.");
    } else if (m_warningText == warning) {
        m_warningText.clear();
    }
}

bool CameraHandler::adjustPacketSize(bool enabled) {
    if (!enabled || m_packetSizeAdjusted || m_info.transportLayerType != OrvTransportLayerTypeGEV)
        return false;
    const bool streamsOverTcp =
        m_features->hasFeature(firstStreamModule, "GVSPProtocol") &&
        textOf(m_features->getFeatureValue(firstStreamModule, "GVSPProtocol")) == "TCP";
    if (streamsOverTcp)
        return false;
    if (!m_stream)
        logError(displayName() + ": GigEAdjustPacketSize: invalid stream pointer.");
    m_packetSizeAdjusted = m_stream && m_stream->negotiatePacketSize();
    return m_packetSizeAdjusted;
}
