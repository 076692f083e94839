// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraHandler.h"

#include "engine/FeatureAccess.h"
#include "engine/FrameObserver.h"
#include "features/FeatureController.h"
#include "features/StepGrid.h"
#include "logging/Log.h"
#include "sdk/OrvCameraWrapper.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

/// Adds the remainder itself, not what is missing to the next multiple: this is the rule.
std::int64_t correctedByIncrement(std::int64_t value, std::int64_t increment) {
    if (increment <= 0)
        return value;
    const std::int64_t remainder = value % increment;
    return value > largest - remainder ? largest : value + remainder;
}

/// Whether a camera got less than was requested for it. What its steps take off counts only beyond
/// the half percent to which Auto Set knows what a camera needs.
bool isShort(std::int64_t taken, std::int64_t asked, std::uint64_t requested) {
    const std::uint64_t tolerated = taken == asked ? 0 : requested / 200;
    return taken < 0 || static_cast<std::uint64_t>(taken) < requested - tolerated;
}

} // namespace

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
    const auto feature = bandwidthFeature();
    return feature ? integerOf(featureValue(*feature)).value_or(0) : 0;
}

std::int64_t CameraHandler::setBandwidth(std::uint64_t value, std::uint64_t requested) {
    m_autosetStatus = AutosetStatus::NotSet;
    if (requested == 0)
        return 0;
    const auto feature = bandwidthFeature();
    if (!feature)
        return 0;

    const FeatureInfo info = m_features->getFeatureInfo(cameraModule, *feature);
    const std::int64_t minimum = integerOf(info.minimum).value_or(0);
    const std::int64_t maximum = integerOf(info.maximum).value_or(0);
    const std::int64_t increment = integerOf(info.increment).value_or(0);
    const auto wanted = static_cast<std::int64_t>(std::min<std::uint64_t>(value, largest));
    const std::int64_t corrected = correctedByIncrement(wanted, increment);
    const StepGrid grid(minimum, maximum, increment);

    const bool maximumKnown = maximum > 0;
    if (!maximumKnown || corrected < maximum) {
        const std::int64_t asked = std::max(corrected, minimum);
        if (const auto taken = writeBandwidth(*feature, grid, asked))
            m_autosetStatus = isShort(*taken, asked, requested) ? AutosetStatus::BelowRequested
                                                                : AutosetStatus::RequestedReached;
    } else if (writeBandwidth(*feature, grid, maximum)) {
        m_autosetStatus = AutosetStatus::ClampedToMaximum;
    }

    const std::int64_t reached = integerOf(featureValue(*feature)).value_or(0);
    readFrameRate("after optimization");
    return reached;
}

/// Many cameras take limits in steps only, and what is asked of them is no step of theirs, even
/// after the correction: such a camera gets the step below. Answers what it took.
std::optional<std::int64_t> CameraHandler::writeLimit(const std::string& feature,
                                                      const StepGrid& grid,
                                                      std::int64_t bytesPerSecond) {
    const auto write = [&](std::int64_t value) {
        return m_features->setFeatureValue(cameraModule, feature, value);
    };
    const bool inRange = bytesPerSecond >= grid.minimum() && bytesPerSecond <= grid.maximum();
    const std::int64_t step = inRange ? grid.atOrBelow(bytesPerSecond) : bytesPerSecond;
    if ((step == bytesPerSecond || !m_takesStepsOnly) && write(bytesPerSecond))
        return bytesPerSecond;
    if (step == bytesPerSecond || !write(step))
        return std::nullopt;
    m_takesStepsOnly = true;
    return step;
}

std::optional<std::int64_t> CameraHandler::writeBandwidth(const std::string& feature,
                                                          const StepGrid& grid,
                                                          std::int64_t bytesPerSecond) {
    const auto written = writeLimit(feature, grid, bytesPerSecond);
    if (written)
        logInfo(displayName() + ": " + feature + " set to " + std::to_string(*written));
    return written;
}

bool CameraHandler::hasFeature(const char* feature) const {
    return m_features->hasFeature(cameraModule, feature);
}

FeatureValue CameraHandler::featureValue(const std::string& feature) const {
    return m_features->getFeatureValue(cameraModule, feature);
}

std::optional<std::string> CameraHandler::relatedFeature(const char* preferred,
                                                         const char* fallback,
                                                         const char* description) const {
    for (const char* const name : {preferred, fallback}) {
        if (hasFeature(name))
            return name;
    }
    logError(displayName() + ": No " + description + " related feature found.");
    return std::nullopt;
}

std::optional<std::string> CameraHandler::bandwidthFeature() const {
    return relatedFeature("DeviceLinkThroughputLimit", "StreamBytesPerSecond", "bandwidth speed");
}

std::optional<std::string> CameraHandler::frameRateFeature() const {
    return relatedFeature("AcquisitionFrameRateLimit", "AcquisitionFrameRate",
                          "acquisition frame rate");
}
