// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/PacketPacing.h"

#include "gvsp/Gvsp.h"

#include <algorithm>
#include <cmath>

namespace orv::aravis {

namespace {

/// Limits are multiples of a kilobyte where the delay allows it.
constexpr std::int64_t roundNumber = 1000;
/// Numbers beyond are errors of a camera: ticks of a picosecond, 100 Tbit/s, an IP packet.
constexpr std::int64_t mostTicks = 1'000'000'000'000;
constexpr std::int64_t fastestLink = 12'500'000'000'000;
constexpr std::int64_t largestPacketSize = 65535;
/// Leader and trailer of a frame.
constexpr double furtherPackets = 2;

bool isWithin(std::int64_t value, std::int64_t most) {
    return value > 0 && value <= most;
}

} // namespace

std::optional<PacketPacing> PacketPacing::of(const PacingSettings& settings) {
    const IntegerLimits& delay = settings.delay;
    if (!isWithin(settings.packetBytes, largestPacketSize) ||
        !isWithin(settings.ticksPerSecond, mostTicks) ||
        !isWithin(settings.linkSpeed, fastestLink) || delay.minimum < 0 ||
        delay.maximum <= delay.minimum || delay.increment < 1)
        return std::nullopt;
    const PacketPacing pacing(settings);
    const IntegerLimits limits = pacing.limits();
    return limits.minimum < limits.maximum ? std::optional(pacing) : std::nullopt;
}

PacketPacing::PacketPacing(const PacingSettings& settings) : m_settings(settings) {
    // One step of the delay changes the rate most where the rate is highest.
    const double fastest = bytesPerSecond(settings.delay.minimum);
    const double step = fastest * fastest * static_cast<double>(settings.delay.increment) /
                        static_cast<double>(settings.packetBytes) /
                        static_cast<double>(settings.ticksPerSecond);
    const double rounded = (std::floor(step / roundNumber) + 1) * roundNumber;
    m_increment =
        static_cast<std::int64_t>(std::min(rounded, static_cast<double>(settings.linkSpeed)));
}

double PacketPacing::bytesPerSecond(std::int64_t delay) const {
    const auto bytes = static_cast<double>(m_settings.packetBytes);
    return bytes / (bytes / static_cast<double>(m_settings.linkSpeed) +
                    static_cast<double>(delay) / static_cast<double>(m_settings.ticksPerSecond));
}

std::int64_t PacketPacing::limitAtOrAbove(double bytesPerSecond) const {
    // For a rate that is a limit but for the error of a double.
    constexpr double tolerance = 1e-9;
    const double steps = (static_cast<double>(m_settings.linkSpeed) - bytesPerSecond) /
                         static_cast<double>(m_increment);
    const auto below = static_cast<std::int64_t>(std::floor(steps + tolerance)) * m_increment;
    const std::int64_t limit = m_settings.linkSpeed - below;
    return limit > 0 ? limit : limit + m_increment;
}

IntegerLimits PacketPacing::limits() const {
    return {limitOf(m_settings.delay.maximum), limitOf(m_settings.delay.minimum), m_increment};
}

std::int64_t PacketPacing::delayFor(std::int64_t limit) const {
    const IntegerLimits& range = m_settings.delay;
    const auto link = static_cast<double>(m_settings.linkSpeed);
    const double wanted = std::max(static_cast<double>(limit), 1.0);
    const double ticks = static_cast<double>(m_settings.packetBytes) *
                         static_cast<double>(m_settings.ticksPerSecond) * (link - wanted) /
                         (link * wanted);
    if (ticks >= static_cast<double>(range.maximum))
        return range.minimum + (range.maximum - range.minimum) / range.increment * range.increment;
    const auto least = static_cast<std::int64_t>(std::ceil(std::max(ticks, 0.0)));
    const std::int64_t beyond = std::max(least - range.minimum, std::int64_t{0});
    const std::int64_t steps = (beyond + range.increment - 1) / range.increment;
    return range.minimum +
           std::min(steps, (range.maximum - range.minimum) / range.increment) * range.increment;
}

std::int64_t PacketPacing::limitOf(std::int64_t delay) const {
    return limitAtOrAbove(
        bytesPerSecond(std::clamp(delay, m_settings.delay.minimum, m_settings.delay.maximum)));
}

double PacketPacing::framesPerSecond(std::int64_t delay, std::int64_t payload) const {
    // The larger headers, of 64-bit frame numbers.
    const auto headers = static_cast<double>(gvsp::ipAndUdpSize + gvsp::extendedHeaderSize);
    const auto bytes = static_cast<double>(m_settings.packetBytes);
    const double packets =
        std::ceil(static_cast<double>(payload) / std::max(bytes - headers, 1.0)) + furtherPackets;
    return bytesPerSecond(delay) / bytes / packets;
}

} // namespace orv::aravis
