// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraHandler.h"

#include "engine/Truncation.h"
#include "features/BandwidthLimit.h"
#include "features/FeatureController.h"
#include "logging/Log.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>

namespace {

/// Distance from the target frame rate, relative to it, at which the target counts as missed.
constexpr double tolerance = 0.005;
constexpr int maximumIterations = 10;

/// Bits per pixel of a PixelSize entry, three letters and a number ("Bpp8"); nothing when there is
/// no such number.
std::optional<int> bitsPerPixel(const std::string& entry) {
    constexpr std::size_t letters = 3;
    if (entry.size() <= letters)
        return std::nullopt;
    int bits = 0;
    const auto parsed = std::from_chars(entry.data() + letters, entry.data() + entry.size(), bits);
    return parsed.ec == std::errc() && bits >= 0 ? std::optional(bits) : std::nullopt;
}

/// The search for the smallest bandwidth that keeps the target frame rate: steps that are halved
/// each time, upwards until the target is reached, then downwards until it is missed.
class BandwidthSearch {
public:
    /// \p tryOut sets a bandwidth and answers the frame rate that the camera then reports.
    BandwidthSearch(std::function<double(std::int64_t)> tryOut, double target)
        : m_tryOut(std::move(tryOut)), m_target(target) {}

    /// Answers the bandwidth found, which may lie below what the camera permits.
    std::int64_t run(std::int64_t calculated, std::int64_t maximum) {
        double frameRate = m_tryOut(calculated);
        m_deviation = deviationOf(frameRate);
        m_step = (maximum - calculated) / 2;
        m_base = calculated;
        logDebug("Calculated bandwidth:" + std::to_string(calculated) +
                 " current frame rate: " + toText(frameRate));
        logDebug("Max frameRate: " + toText(m_target) +
                 " max. bandwidth: " + std::to_string(maximum));
        while ((m_direction > 0 || m_deviation < tolerance) && iterate()) {
        }
        logDebug("Autoset completed in " + std::to_string(m_iterations) + " steps.");
        return m_base - 2 * m_direction * m_step;
    }

private:
    double deviationOf(double frameRate) const { return std::abs(m_target - frameRate) / m_target; }

    /// False when the search is over.
    bool iterate() {
        const std::int64_t candidate = m_base + m_direction * m_step;
        const double frameRate = m_tryOut(candidate);
        m_deviation = deviationOf(frameRate);
        logDebug("Deviation: " + toText(static_cast<double>(m_direction) * m_deviation) +
                 " Current frameRate: " + toText(frameRate) +
                 "  stepBW: " + std::to_string(m_step) + " bandwidth:" + std::to_string(candidate));
        ++m_iterations;
        if (m_direction > 0 && m_deviation < tolerance) {
            m_direction = -1;
            logDebug("Switch direction");
        }
        m_step /= 2;

        if (m_direction < 0 && m_deviation - m_previousDeviation > tolerance) {
            logDebug("Repeat 1/2 of last step, from bandwidth: " + std::to_string(m_base));
            m_deviation = m_previousDeviation;
            m_repeated = true;
        } else {
            m_previousDeviation = m_deviation;
            m_base = candidate;
            if (m_repeated && m_deviation < tolerance) {
                m_step = 0;
                return false;
            }
        }
        return m_iterations < maximumIterations;
    }

    const std::function<double(std::int64_t)> m_tryOut;
    const double m_target;
    std::int64_t m_step = 0;
    std::int64_t m_direction = 1;
    std::int64_t m_base = 0;
    double m_deviation = 0.0;
    double m_previousDeviation = 0.0;
    int m_iterations = 0;
    bool m_repeated = false;
};

} // namespace

double CameraHandler::readFrameRate(const std::string& label) const {
    constexpr double unknown = -1.0;
    const auto feature = frameRateFeature();
    const auto value = feature ? numberOf(featureValue(*feature)) : std::nullopt;
    if (!value)
        return unknown;
    const double frameRate = *value < 0.0 ? unknown : *value;
    logInfo(displayName() + ": AcquisitionFrameRate " + label + " " + toText(frameRate));
    return frameRate;
}

std::int64_t CameraHandler::getPayloadSize() const {
    auto payload = hasFeature("PixelSize") ? payloadFromPixelSize() : std::nullopt;
    if (!payload && hasFeature("ImageSize"))
        payload = integerOf(featureValue("ImageSize"));
    if (!payload)
        logError(displayName() + ": No pixel or image size related features found.");
    return std::max<std::int64_t>(payload.value_or(0), 0);
}

std::optional<std::int64_t> CameraHandler::payloadFromPixelSize() const {
    const auto bits = bitsPerPixel(textOf(featureValue("PixelSize")).value_or(std::string()));
    if (!bits)
        return std::nullopt;
    const auto height = integerOf(featureValue("Height"));
    const auto width = integerOf(featureValue("Width"));
    if (!height || !width)
        return std::nullopt;
    const double imageBits =
        static_cast<double>(*bits) * static_cast<double>(*width) * static_cast<double>(*height);
    return truncated(imageBits * 0.125);
}

std::int64_t CameraHandler::autoSet(double cameraSafetyMargin) {
    if (readFrameRate("before optimization") < 0.0) {
        logError(displayName() + ": current AcquisitionFrameRate < 0, internal error occured.");
        m_autosetStatus = AutosetStatus::NotSet;
        return 0;
    }
    if (!findBandwidthLimit()) {
        m_autosetStatus = AutosetStatus::NotSet;
        return 0;
    }
    if (hasFeature("AcquisitionFrameRateEnable") &&
        featureValue("AcquisitionFrameRateEnable") == FeatureValue(true))
        logInfo(displayName() + ": 'AcquisitionFrameRateEnable' is 'true', the user-set "
                                "AcquisitionFrameRate will be used for optimization.");

    const FeatureInfo info = m_bandwidthLimit->read();
    const std::int64_t minimum = integerOf(info.minimum).value_or(0);
    const std::int64_t maximum = integerOf(info.maximum).value_or(0);
    if (maximum > 0)
        m_bandwidthLimit->write(maximum);
    readFrameRate("max. possible");
    const auto frameRate = frameRateFeature();
    if (!frameRate)
        return 0;
    // A target of 0 is never reached: the search then climbs to about the maximum.
    const double target = std::max(numberOf(featureValue(*frameRate)).value_or(0.0), 0.0);

    const std::int64_t calculated = truncated(static_cast<double>(getPayloadSize()) * target);
    const double calculatedNumber = static_cast<double>(calculated);
    if (maximum <= 0 ||
        calculatedNumber * cameraSafetyMargin + calculatedNumber >= static_cast<double>(maximum)) {
        logDebug("Calculated bandwidth " + std::to_string(calculated) +
                 " + camera safety margin > maximum bandwidth, skip iteration.");
        return calculated;
    }
    const auto tryOut = [&](std::int64_t bytesPerSecond) {
        m_bandwidthLimit->write(bytesPerSecond);
        return numberOf(featureValue(*frameRate)).value_or(0.0);
    };
    return std::max(BandwidthSearch(tryOut, target).run(calculated, maximum), minimum);
}

void autoSetCamera(CameraHandler& camera, double safetyMargin) {
    const auto need =
        static_cast<std::uint64_t>(std::max<std::int64_t>(camera.autoSet(safetyMargin), 0));
    const double withMargin = static_cast<double>(need) * (1 + safetyMargin);
    const std::int64_t value = std::max<std::int64_t>(truncated(withMargin), 0);
    camera.setBandwidth(static_cast<std::uint64_t>(value), need);
}
