// SPDX-License-Identifier: BSD-3-Clause
#include "observer/CameraDirectory.h"

#include "gige/BigEndian.h"
#include "gige/DiscoveredCamera.h"
#include "gige/GvcpCommand.h"

#include <algorithm>
#include <cstddef>

namespace observer {

namespace {

/// Cameras whose names are kept; then all are learned anew, so that made-up answers do not fill the
/// memory.
constexpr std::size_t mostCameras = 1024;
/// The acknowledge of ReadMemory begins with the address that was read.
constexpr std::size_t addressSize = 4;
constexpr std::uint16_t readMemoryAcknowledge =
    static_cast<std::uint16_t>(gige::GvcpCommand::ReadMemory) + 1;

/// A register that holds a text (GigE Vision 2.2, 28).
struct TextRegister {
    std::uint32_t address;
    std::size_t size;
    std::string CameraName::*text;
};
constexpr TextRegister textRegisters[] = {{0x68, 32, &CameraName::model},
                                          {0xD8, 16, &CameraName::serialNumber},
                                          {0xE8, 16, &CameraName::userName}};

std::string textOf(const std::uint8_t* begin, std::size_t size) {
    return {begin, std::find(begin, begin + size, 0)};
}

} // namespace

CameraName& CameraDirectory::entryOf(std::uint32_t address) {
    const auto known = m_names.find(address);
    if (known != m_names.end())
        return known->second;
    if (m_names.size() >= mostCameras)
        m_names.clear();
    return m_names[address];
}

void CameraDirectory::note(const gige::UdpDatagram& answer) {
    if (answer.captured < gige::gvcpHeaderSize || answer.captured != answer.size)
        return;
    const std::uint16_t status = gige::bigEndian16(answer.data);
    const std::uint16_t kind = gige::bigEndian16(answer.data + 2);
    const std::uint16_t id = gige::bigEndian16(answer.data + 6);
    if (const auto camera = gige::parseDiscovery(answer.data, answer.size, id)) {
        entryOf(answer.sender) = {camera->macAddress, camera->model, camera->serialNumber,
                                  camera->userName};
        return;
    }
    if (kind != readMemoryAcknowledge || status != 0 ||
        answer.size < gige::gvcpHeaderSize + addressSize)
        return;
    const std::uint32_t address = gige::bigEndian32(answer.data + gige::gvcpHeaderSize);
    const std::size_t size = answer.size - gige::gvcpHeaderSize - addressSize;
    for (const TextRegister& each : textRegisters) {
        if (each.address == address && each.size <= size)
            entryOf(answer.sender).*each.text =
                textOf(answer.data + gige::gvcpHeaderSize + addressSize, each.size);
    }
}

CameraName CameraDirectory::nameOf(std::uint32_t address) const {
    const auto known = m_names.find(address);
    return known == m_names.end() ? CameraName() : known->second;
}

} // namespace observer
