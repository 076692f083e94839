// SPDX-License-Identifier: BSD-3-Clause
#include "tests/fakecamera/CameraRegisters.h"

#include "tests/fakecamera/Protocol.h"

#include <arv.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace fakecamera {

CameraRegisters::CameraRegisters(const std::string& serial, const std::string& genicamFile)
    : m_memory(arv_fake_camera_new_full(serial.c_str(), genicamFile.c_str()), g_object_unref) {
    std::size_t descriptionSize = 0;
    if (arv_fake_camera_get_genicam_xml(m_memory.get(), &descriptionSize) == nullptr) {
        throw std::runtime_error("cannot read " + genicamFile);
    }
    static_assert(descriptionAddress == ARV_FAKE_CAMERA_MEMORY_SIZE);
    m_end = descriptionAddress + static_cast<std::uint32_t>(descriptionSize);
}

std::uint32_t CameraRegisters::read(std::uint32_t address) const {
    const std::lock_guard lock(m_mutex);
    std::uint32_t value = 0;
    arv_fake_camera_read_register(m_memory.get(), address, &value);
    return value;
}

void CameraRegisters::write(std::uint32_t address, std::uint32_t value) {
    const std::lock_guard lock(m_mutex);
    arv_fake_camera_write_register(m_memory.get(), address, value);
}

void CameraRegisters::add(std::uint32_t address, std::uint64_t amount) {
    const std::lock_guard lock(m_mutex);
    std::uint8_t bytes[8];
    arv_fake_camera_read_memory(m_memory.get(), address, sizeof bytes, bytes);
    protocol::put64(bytes, protocol::get64(bytes) + amount);
    arv_fake_camera_write_memory(m_memory.get(), address, sizeof bytes, bytes);
}

void CameraRegisters::writeText(std::uint32_t address, std::size_t length,
                                const std::string& text) {
    std::vector<std::uint8_t> bytes(length, 0);
    std::memcpy(bytes.data(), text.data(), std::min(text.size(), length));
    writeMemory(address, static_cast<std::uint32_t>(length), bytes.data());
}

bool CameraRegisters::readMemory(std::uint32_t address, std::uint32_t size,
                                 std::uint8_t* data) const {
    // Hosts read whole words, so the description's last read may reach beyond it.
    if (size > m_end + 3 || address > m_end + 3 - size) {
        return false;
    }
    const std::uint32_t present = std::min(size, m_end - std::min(m_end, address));
    std::fill(data + present, data + size, std::uint8_t{0});
    const std::lock_guard lock(m_mutex);
    return arv_fake_camera_read_memory(m_memory.get(), address, present, data) != 0;
}

bool CameraRegisters::writeMemory(std::uint32_t address, std::uint32_t size,
                                  const std::uint8_t* data) {
    if (size > descriptionAddress || address >= descriptionAddress - size) {
        return false;
    }
    const std::lock_guard lock(m_mutex);
    return arv_fake_camera_write_memory(m_memory.get(), address, size, data) != 0;
}

std::size_t CameraRegisters::payload() const {
    const std::uint64_t bitsPerPixel = read(PixelFormat) >> 16 & 0xff;
    return (std::uint64_t{read(Width)} * read(Height) * bitsPerPixel + 7) / 8;
}

double CameraRegisters::bytesPerSecond() const {
    return std::max(1u, read(LimitMode) == 1 ? read(Limit) : read(LinkSpeed));
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
