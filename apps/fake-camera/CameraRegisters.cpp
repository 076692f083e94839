// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/CameraRegisters.h"

#include "fake-camera/Protocol.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace fakecamera {

namespace {

constexpr std::uint32_t nanosecondTicks = 1'000'000'000;
/// Of the protocol, with 64-bit frame numbers.
constexpr std::uint32_t version2 = 0x20000;

} // namespace

CameraRegisters::CameraRegisters(const std::string& description)
    : m_memory(descriptionAddress + description.size() + 3) {
    std::copy(description.begin(), description.end(), m_memory.begin() + descriptionAddress);
    char url[64];
    std::snprintf(url, sizeof url, "Local:FakeCamera.xml;%x;%zx", descriptionAddress,
                  description.size());
    writeText(DescriptionUrl, descriptionUrlSize, url);
    write(SensorWidth, sensorSize);
    write(SensorHeight, sensorSize);
    write(PixelFormat, pixelFormatMono8);
    write(AcquisitionMode, continuousAcquisition);
    write(InterfaceCount, 1);
    write(StreamCount, 1);
    write(TicksPerSecond, nanosecondTicks);
}

std::uint32_t CameraRegisters::read(std::uint32_t address) const {
    const std::lock_guard lock(m_mutex);
    return protocol::get32(&m_memory.at(address));
}

void CameraRegisters::write(std::uint32_t address, std::uint32_t value) {
    const std::lock_guard lock(m_mutex);
    protocol::put32(&m_memory.at(address), value);
}

void CameraRegisters::add(std::uint32_t address, std::uint64_t amount) {
    const std::lock_guard lock(m_mutex);
    std::uint8_t* const bytes = &m_memory.at(address);
    protocol::put64(bytes, protocol::get64(bytes) + amount);
}

void CameraRegisters::writeText(std::uint32_t address, std::size_t length,
                                const std::string& text) {
    std::vector<std::uint8_t> bytes(length, 0);
    std::memcpy(bytes.data(), text.data(), std::min(text.size(), length));
    writeMemory(address, static_cast<std::uint32_t>(length), bytes.data());
}

bool CameraRegisters::readMemory(std::uint32_t address, std::uint32_t size,
                                 std::uint8_t* data) const {
    const std::lock_guard lock(m_mutex);
    if (size > m_memory.size() || address > m_memory.size() - size)
        return false;
    std::copy_n(m_memory.begin() + address, size, data);
    return true;
}

bool CameraRegisters::writeMemory(std::uint32_t address, std::uint32_t size,
                                  const std::uint8_t* data) {
    if (size > descriptionAddress || address >= descriptionAddress - size)
        return false;
    const std::lock_guard lock(m_mutex);
    std::copy_n(data, size, m_memory.begin() + address);
    return true;
}

std::size_t CameraRegisters::payload() const {
    const std::uint64_t bitsPerPixel = read(PixelFormat) >> 16 & 0xff;
    return (std::uint64_t{read(Width)} * read(Height) * bitsPerPixel + 7) / 8;
}

double CameraRegisters::bytesPerSecond() const {
    const double limit = std::max(1u, read(LimitMode) == 1 ? read(Limit) : read(LinkSpeed));
    return read(PacketDelay) == 0 ? limit : std::min(limit, delayedBytesPerSecond());
}

/// A packet takes its own time on the link and the delay.
double CameraRegisters::delayedBytesPerSecond() const {
    using namespace protocol;
    const std::uint32_t packet = read(StreamPacketSize) & packetSizeBits;
    const std::size_t headers =
        ipAndUdpSize + (read(Version) >= version2 ? extendedStreamHeaderSize : streamHeaderSize);
    const double seconds = static_cast<double>(packet) / std::max(1u, read(LinkSpeed)) +
                           static_cast<double>(read(PacketDelay)) / read(TicksPerSecond);
    return static_cast<double>(packet - headers) / seconds;
}

double CameraRegisters::frameRate() const {
    const double slowest = std::max(read(SensorMicroseconds), read(ExposureMicroseconds));
    const double possible =
        std::min(1e6 / slowest, bytesPerSecond() / static_cast<double>(payload()));
    return read(FrameRateEnable) == 1 ? std::min(possible, readDouble(FrameRate)) : possible;
}

bool CameraRegisters::isTriggered() const {
    const bool freerun = read(TriggerMode) == 0 || read(TriggerSource) == 0;
    return !freerun || read(ExposureMode) != 0;
}

double CameraRegisters::readDouble(std::uint32_t address) const {
    std::uint8_t bytes[8] = {};
    readMemory(address, sizeof bytes, bytes);
    const std::uint64_t bits = protocol::get64(bytes);
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

} // namespace fakecamera
