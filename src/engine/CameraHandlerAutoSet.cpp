// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraHandler.h"

#include "engine/BandwidthSearch.h"
#include "engine/Truncation.h"
#include "features/BandwidthLimit.h"
#include "features/FeatureController.h"
#include "logging/Log.h"

#include <algorithm>
#include <charconv>

namespace {

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
    const bool isRateKnown = readFrameRate("before optimization") >= 0.0;
    if (!isRateKnown)
        logError(displayName() + ": current AcquisitionFrameRate < 0, internal error occured.");
    if (!isRateKnown || !findBandwidthLimit()) {
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
