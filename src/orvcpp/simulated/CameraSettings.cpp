// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/CameraSettings.h"

#include "orvcpp/simulated/PixelFormats.h"

#include <algorithm>

namespace orv::simulated {

CameraSettings::CameraSettings(const CameraData& data) : m_data(data) {
    reset();
}

void CameraSettings::loadUserSet(std::int64_t number) {
    const auto stored = m_userSets.find(number);
    static_cast<CameraState&>(*this) =
        stored == m_userSets.end() ? scenarioState() : stored->second;
}

CameraState CameraSettings::scenarioState() const {
    CameraState state;
    state.width = m_data.sensorWidth;
    state.height = m_data.sensorHeight;
    state.offsetX = 0;
    state.offsetY = 0;
    state.binningHorizontal = 1;
    state.binningVertical = 1;
    state.pixelFormat = m_data.pixelFormat;
    state.exposureTime = m_data.exposureTime;
    state.exposureMode = m_data.exposureMode;
    state.exposureAuto = AutoOff;
    state.frameRateEnabled = m_data.frameRateEnabled;
    state.userFrameRate = m_data.frameRate;
    state.bandwidth = m_data.bandwidth;
    state.bandwidthLimited = 1;
    state.frameRateConstrained = true;
    state.triggerMode = m_data.triggerMode ? 1 : 0;
    state.triggerSource = m_data.triggerSource;
    state.packetSize = m_data.packetSize;
    return state;
}

void CameraSettings::fitRegion() {
    // The increments of width and height are 8 and 2.
    width = std::min(width, maximumWidth() / 8 * 8);
    height = std::min(height, maximumHeight() / 2 * 2);
    offsetX = std::min(offsetX, (maximumWidth() - width) / 8 * 8);
    offsetY = std::min(offsetY, (maximumHeight() - height) / 2 * 2);
}

std::int64_t CameraSettings::payloadSize() const {
    return (width * height * bitsPerPixel(format()) + 7) / 8;
}

std::int64_t CameraSettings::linkSpeed() const {
    return static_cast<std::int64_t>(m_data.linkBitsPerSecond / 8);
}

std::int64_t CameraSettings::usableBandwidth() const {
    const bool isLimited = m_data.bandwidthFeature != BandwidthFeature::None &&
                           bandwidthLimited == 1 && frameRateConstrained;
    return isLimited ? std::min(bandwidth, linkSpeed()) : linkSpeed();
}

double CameraSettings::possibleFrameRate() const {
    const double byExposure = 1e6 / exposureTime;
    const double byBandwidth =
        static_cast<double>(usableBandwidth()) / static_cast<double>(payloadSize());
    return std::min({m_data.sensorFrameRate, byExposure, byBandwidth});
}

double CameraSettings::frameRate() const {
    const double possible = possibleFrameRate();
    return frameRateEnabled ? std::min(possible, userFrameRate) : possible;
}

bool CameraSettings::isTriggered() const {
    return triggerMode == 1 && triggerSource != TriggerSourceFreerun;
}

Demand CameraSettings::demand() const {
    Demand demand;
    demand.maximumRate = frameRate();
    const bool fromOutside = triggerSource != TriggerSourceSoftware;
    const double triggered = fromOutside ? m_data.triggerRate : 0;
    demand.framesPerSecond =
        isTriggered() ? std::min(triggered, demand.maximumRate) : demand.maximumRate;
    demand.payload = static_cast<std::uint32_t>(payloadSize());
    demand.overloadDamage = m_data.overloadDamage;
    return demand;
}

} // namespace orv::simulated
