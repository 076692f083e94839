// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/DelayLimit.h"

#include "orvcpp/aravis/device/FeatureDescription.h"
#include "orvcpp/aravis/device/NodeAccess.h"
#include "orvcpp/aravis/discovery/CameraRecord.h"

#include <algorithm>

namespace orv::aravis {

namespace {

constexpr std::int64_t bytesPerMegabit = 125'000;
constexpr std::int64_t bitsPerByte = 8;

/// 0 for a feature that does not exist or cannot be read.
std::int64_t readOrZero(const FeatureCatalogue& features, const char* name) {
    const auto feature = features.find(name);
    std::int64_t value = 0;
    return feature && node::get(*feature, value) == OrvErrorSuccess ? value : 0;
}

/// Bytes per second of the camera's link. Where the camera does not tell, those of the network
/// adapter, which is at least as fast as what arrives there.
std::int64_t linkSpeedOf(const FeatureCatalogue& features, const CameraRecord& record) {
    if (const std::int64_t bytes = readOrZero(features, "DeviceLinkSpeed"); bytes > 0)
        return bytes;
    if (const std::int64_t megabits = readOrZero(features, "GevLinkSpeed"); megabits > 0)
        return megabits * bytesPerMegabit;
    return record.adapter ? platform::linkSpeed(record.adapter->name) / bitsPerByte : 0;
}

bool isIn(std::int64_t value, const IntegerLimits& limits) {
    return value >= limits.minimum && value <= limits.maximum &&
           (value - limits.minimum) % limits.increment == 0;
}

} // namespace

std::shared_ptr<DelayLimit> DelayLimit::make(const FeatureCatalogue& features,
                                             const CameraRecord& record) {
    if (record.type != OrvTransportLayerTypeGEV || features.find("DeviceLinkThroughputLimit") ||
        features.find("StreamBytesPerSecond"))
        return nullptr;
    std::shared_ptr<DelayLimit> made(new DelayLimit);
    made->m_delay = features.find("GevSCPD");
    made->m_packetSize = features.find("GevSCPSPacketSize");
    if (!made->m_delay || !made->m_delay->isWritable || !made->m_packetSize)
        return nullptr;
    made->m_ticksPerSecond = readOrZero(features, "GevTimestampTickFrequency");
    made->m_linkSpeed = linkSpeedOf(features, record);
    // An own one may already take the delay into account.
    if (!features.find("AcquisitionFrameRateLimit")) {
        made->m_frameRate = features.find("AcquisitionFrameRate");
        made->m_payload = features.find("PayloadSize");
    }
    PacingSettings settings;
    if (made->readSettings(settings) != OrvErrorSuccess || !PacketPacing::of(settings) ||
        made->readDelay(made->m_found.ticks) != OrvErrorSuccess)
        return nullptr;
    made->m_found.packetBytes = made->m_packetBytes = settings.packetBytes;
    return made;
}

OrvErrorType DelayLimit::readSettings(PacingSettings& settings) const {
    settings.ticksPerSecond = m_ticksPerSecond;
    settings.linkSpeed = m_linkSpeed;
    if (const OrvErrorType error = node::get(*m_packetSize, settings.packetBytes);
        error != OrvErrorSuccess)
        return error;
    node::Limits<std::int64_t> delay;
    const OrvErrorType error = node::limits(*m_delay, delay);
    settings.delay = {delay.minimum, delay.maximum, delay.increment};
    return error;
}

OrvErrorType DelayLimit::pacing(std::optional<PacketPacing>& found) const {
    PacingSettings settings;
    if (const OrvErrorType error = readSettings(settings); error != OrvErrorSuccess)
        return error;
    found = PacketPacing::of(settings);
    return found ? OrvErrorSuccess : OrvErrorNotAvailable;
}

OrvErrorType DelayLimit::readDelay(std::int64_t& ticks) const {
    return node::get(*m_delay, ticks);
}

OrvErrorType DelayLimit::shortestDelay(std::int64_t& ticks) const {
    node::Limits<std::int64_t> range;
    const OrvErrorType error = node::limits(*m_delay, range);
    ticks = range.minimum;
    return error;
}

OrvErrorType DelayLimit::admitsSwitching() const {
    return node::admitsWriting(*m_delay);
}

OrvErrorType DelayLimit::admitsWriting() const {
    bool on = false;
    if (const OrvErrorType error = isOn(on); error != OrvErrorSuccess)
        return error;
    return on ? admitsSwitching() : OrvErrorInvalidAccess;
}

OrvErrorType DelayLimit::limits(IntegerLimits& limits) const {
    std::optional<PacketPacing> now;
    const OrvErrorType error = pacing(now);
    if (error == OrvErrorSuccess)
        limits = now->limits();
    return error;
}

OrvErrorType DelayLimit::get(std::int64_t& limit) const {
    std::optional<PacketPacing> now;
    if (const OrvErrorType error = pacing(now); error != OrvErrorSuccess)
        return error;
    bool on = false;
    std::int64_t ticks = 0;
    if (const OrvErrorType error = isOn(on); error != OrvErrorSuccess)
        return error;
    if (const OrvErrorType error = readDelay(ticks); error != OrvErrorSuccess)
        return error;
    limit = now->limitOf(on ? ticks : *m_whenOn);
    return OrvErrorSuccess;
}

OrvErrorType DelayLimit::delayFor(std::int64_t limit, std::int64_t& ticks) const {
    PacingSettings settings;
    if (const OrvErrorType error = readSettings(settings); error != OrvErrorSuccess)
        return error;
    const auto now = PacketPacing::of(settings);
    if (!now)
        return OrvErrorNotAvailable;
    if (!isIn(limit, now->limits()))
        return OrvErrorInvalidValue;
    const bool wasFound =
        settings.packetBytes == m_found.packetBytes && now->limitOf(m_found.ticks) == limit;
    ticks = wasFound ? m_found.ticks : now->delayFor(limit);
    return OrvErrorSuccess;
}

OrvErrorType DelayLimit::writeDelay(std::int64_t ticks) {
    std::int64_t packetBytes = 0;
    if (const OrvErrorType error = node::get(*m_packetSize, packetBytes); error != OrvErrorSuccess)
        return error;
    const OrvErrorType error = node::set(*m_delay, ticks);
    if (error == OrvErrorSuccess)
        m_packetBytes = packetBytes;
    return error;
}

OrvErrorType DelayLimit::set(std::int64_t limit) {
    if (const OrvErrorType error = admitsWriting(); error != OrvErrorSuccess)
        return error;
    std::int64_t ticks = 0;
    if (const OrvErrorType error = delayFor(limit, ticks); error != OrvErrorSuccess)
        return error;
    const OrvErrorType error = writeDelay(ticks);
    if (error == OrvErrorSuccess)
        m_whenOn.reset();
    return error;
}

OrvErrorType DelayLimit::isOn(bool& on) const {
    on = true;
    if (!m_whenOn)
        return OrvErrorSuccess;
    // A delay that was written without this object holds.
    std::int64_t ticks = 0;
    std::int64_t shortest = 0;
    if (const OrvErrorType error = readDelay(ticks); error != OrvErrorSuccess)
        return error;
    const OrvErrorType error = shortestDelay(shortest);
    on = ticks != shortest;
    return error;
}

OrvErrorType DelayLimit::switchTo(bool on) {
    bool wasOn = false;
    if (const OrvErrorType error = isOn(wasOn); error != OrvErrorSuccess || wasOn == on)
        return error;
    std::int64_t now = 0;
    std::int64_t shortest = 0;
    if (const OrvErrorType error = readDelay(now); error != OrvErrorSuccess)
        return error;
    if (const OrvErrorType error = shortestDelay(shortest); error != OrvErrorSuccess)
        return error;
    const OrvErrorType error = writeDelay(on ? *m_whenOn : shortest);
    if (error == OrvErrorSuccess)
        m_whenOn = on ? std::nullopt : std::optional(now);
    return error;
}

OrvErrorType DelayLimit::frameRate(double& framesPerSecond) const {
    std::int64_t payload = 0;
    std::int64_t ticks = 0;
    std::optional<PacketPacing> now;
    if (const OrvErrorType error = node::get(*m_frameRate, framesPerSecond);
        error != OrvErrorSuccess)
        return error;
    if (const OrvErrorType error = node::get(*m_payload, payload); error != OrvErrorSuccess)
        return error;
    if (const OrvErrorType error = readDelay(ticks); error != OrvErrorSuccess)
        return error;
    if (const OrvErrorType error = pacing(now); error != OrvErrorSuccess)
        return error;
    framesPerSecond = std::min(framesPerSecond, now->framesPerSecond(ticks, payload));
    return OrvErrorSuccess;
}

OrvErrorType DelayLimit::followPacketSize() {
    // A busy camera may refuse a call.
    const OrvErrorType error = tryToFollow();
    return error == OrvErrorSuccess ? error : tryToFollow();
}

OrvErrorType DelayLimit::tryToFollow() {
    PacingSettings settings;
    std::int64_t ticks = 0;
    bool on = false;
    if (const OrvErrorType error = readSettings(settings); error != OrvErrorSuccess)
        return error;
    const std::int64_t packetBytes = settings.packetBytes;
    const auto after = PacketPacing::of(settings);
    if (packetBytes == m_packetBytes || !after)
        return OrvErrorSuccess;
    if (const OrvErrorType error = readDelay(ticks); error != OrvErrorSuccess)
        return error;
    if (const OrvErrorType error = isOn(on); error != OrvErrorSuccess)
        return error;
    settings.packetBytes = m_packetBytes;
    const auto before = PacketPacing::of(settings);
    if (before && !on)
        m_whenOn = after->delayFor(before->limitOf(*m_whenOn));
    // The speed of the link needs no delay with any packet size.
    if (before && on && ticks > settings.delay.minimum) {
        const OrvErrorType error = node::set(*m_delay, after->delayFor(before->limitOf(ticks)));
        if (error != OrvErrorSuccess)
            return error;
    }
    m_packetBytes = packetBytes;
    return OrvErrorSuccess;
}

OrvErrorType DelayLimit::noteDelay() {
    bool on = false;
    if (const OrvErrorType error = isOn(on); error != OrvErrorSuccess)
        return error;
    // While it is off, no delay is written.
    return on ? node::get(*m_packetSize, m_packetBytes) : followPacketSize();
}

} // namespace orv::aravis
