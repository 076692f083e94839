// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraHandler.h"

#include "engine/FrameObserver.h"
#include "engine/GigEStream.h"
#include "features/BandwidthLimit.h"
#include "features/FeatureController.h"
#include "logging/Log.h"
#include "sdk/OrvCameraWrapper.h"
#include "sdk/OrvSystemWrapper.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

/// Adds the remainder itself, not the distance to the next multiple. This is intended.
std::int64_t correctedByIncrement(std::int64_t value, std::int64_t increment) {
    if (increment <= 0)
        return value;
    const std::int64_t remainder = value % increment;
    return value > largest - remainder ? largest : value + remainder;
}

/// Status of an accepted bandwidth below the camera's maximum. Rounding to a step may take half a
/// percent off a request, since Auto Set finds needs with that precision. If \p share is below the
/// request, nothing may be taken off.
AutosetStatus statusOf(std::int64_t taken, std::uint64_t share, std::uint64_t requested) {
    const std::uint64_t tolerated = share < requested ? 0 : requested / 200;
    const bool isEnough = taken >= 0 && static_cast<std::uint64_t>(taken) >= requested - tolerated;
    return isEnough ? AutosetStatus::RequestedReached : AutosetStatus::BelowRequested;
}

} // namespace

std::shared_ptr<CameraHandler>
OrvSystemWrapper::CreateCameraHandler(const std::shared_ptr<OrvCameraWrapper>& camera) {
    return std::make_shared<CameraHandler>(camera);
}

CameraHandler::~CameraHandler() {
    if (m_acquiring)
        m_camera->StopContinuousImageAcquisition();
    if (m_openedHere)
        m_camera->Close();
}

CameraInfo CameraHandler::getCameraInfo() const {
    return m_info;
}

FrameStatistics CameraHandler::getFrameStatistics() const {
    return m_observer->statistics();
}

bool CameraHandler::isAcquiring() const {
    return m_acquiring;
}

bool CameraHandler::isOpened() const {
    return m_opened;
}

void CameraHandler::setOpened(bool opened) {
    m_opened = opened;
}

void CameraHandler::setLocked(bool locked) {
    m_locked = locked;
}

bool CameraHandler::isLocked() const {
    return m_locked;
}

AutosetStatus CameraHandler::getAutosetStatus() const {
    return m_autosetStatus;
}

std::shared_ptr<FeatureController> CameraHandler::getFeatureController() const {
    return m_features;
}

std::string CameraHandler::getWarningText() const {
    return m_warningText;
}

std::int64_t CameraHandler::getBandwidth() const {
    return findBandwidthLimit() ? m_bandwidthLimit->value() : 0;
}

std::int64_t CameraHandler::setBandwidth(std::uint64_t value, std::uint64_t requested) {
    m_autosetStatus = AutosetStatus::NotSet;
    if (requested == 0 || !findBandwidthLimit())
        return 0;
    writeBandwidth(value, requested);
    const std::int64_t reached = m_bandwidthLimit->value();
    readFrameRate("after optimization");
    return reached;
}

void CameraHandler::writeBandwidth(std::uint64_t value, std::uint64_t requested) {
    const FeatureInfo info = m_bandwidthLimit->read();
    const std::int64_t minimum = integerOf(info.minimum).value_or(0);
    const std::int64_t maximum = integerOf(info.maximum).value_or(0);
    const auto wanted = static_cast<std::int64_t>(std::min<std::uint64_t>(value, largest));
    const std::int64_t corrected =
        correctedByIncrement(wanted, integerOf(info.increment).value_or(0));

    const bool isClamped = maximum > 0 && corrected >= maximum;
    const std::int64_t written = isClamped ? maximum : std::max(corrected, minimum);
    // With less than requested, a step above the share would exceed what the interface has left.
    const std::int64_t atMost = value < requested ? std::min(wanted, written) : written;
    const auto taken = m_bandwidthLimit->write(written, atMost);
    if (!taken)
        return;
    logInfo(displayName() + ": " + m_bandwidthLimit->name() + " set to " + std::to_string(*taken));
    const bool isHighest = *taken == written || *taken >= m_bandwidthLimit->steps().last();
    m_autosetStatus = isClamped && isHighest ? AutosetStatus::ClampedToMaximum
                                             : statusOf(*taken, value, requested);
}

void CameraHandler::switchBandwidthLimitOn() {
    if (m_bandwidthLimit->find())
        m_bandwidthLimit->switchOn();
}

bool CameraHandler::hasFeature(const char* feature) const {
    return m_features->hasFeature(cameraModule, feature);
}

FeatureValue CameraHandler::featureValue(const std::string& feature) const {
    return m_features->getFeatureValue(cameraModule, feature);
}

bool CameraHandler::findBandwidthLimit() const {
    const bool isFound = m_bandwidthLimit->find();
    if (!isFound)
        logMissingFeature("bandwidth speed");
    return isFound;
}

std::optional<std::string> CameraHandler::frameRateFeature() const {
    for (const char* const name : {"AcquisitionFrameRateLimit", "AcquisitionFrameRate"}) {
        if (hasFeature(name))
            return name;
    }
    logMissingFeature("acquisition frame rate");
    return std::nullopt;
}

void CameraHandler::logMissingFeature(const char* description) const {
    logError(displayName() + ": No " + description + " related feature found.");
}
