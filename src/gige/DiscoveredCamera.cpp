// SPDX-License-Identifier: BSD-3-Clause
#include "gige/DiscoveredCamera.h"

#include "gige/BigEndian.h"
#include "gige/BootstrapRegisters.h"
#include "gige/GvcpAnswer.h"

#include <algorithm>
#include <cctype>

namespace gige {

namespace {

/// The acknowledge has the first bytes of the camera's registers (GigE Vision 2.2, 16.1.2). Their
/// addresses, and the lengths of the texts.
constexpr std::size_t answerSize = 248;
constexpr std::size_t macAt = 0x0A;
constexpr std::size_t supportedAt = 0x10;
constexpr std::size_t addressAt = 0x24;
constexpr std::size_t maskAt = 0x34;
constexpr std::size_t gatewayAt = 0x44;
constexpr std::size_t vendorAt = 0x48;
constexpr std::size_t modelAt = 0x68;
constexpr std::size_t nameSize = 32;
constexpr std::size_t serialAt = 0xD8;
constexpr std::size_t serialSize = 16;

std::string text(const std::uint8_t* begin, std::size_t size) {
    return {begin, std::find(begin, begin + size, 0)};
}

IpConfiguration configuration(std::uint32_t bits) {
    return {(bits & persistentBit) != 0, (bits & dhcpBit) != 0, (bits & linkLocalBit) != 0};
}

} // namespace

std::optional<DiscoveredCamera> parseDiscovery(const std::uint8_t* packet, std::size_t size,
                                               std::uint16_t id) {
    if (size != gvcpHeaderSize + answerSize || bigEndian16(packet + 4) != answerSize)
        return std::nullopt;
    const GvcpReply reply = parseReply(packet, size, {GvcpCommand::Discovery, id});
    if (!reply.answer || reply.answer->status != 0)
        return std::nullopt;
    const std::uint8_t* const registers = reply.answer->data.data();
    DiscoveredCamera camera;
    camera.macAddress =
        std::uint64_t{bigEndian16(registers + macAt)} << 32U | bigEndian32(registers + macAt + 2);
    camera.supported = configuration(bigEndian32(registers + supportedAt));
    camera.current = configuration(bigEndian32(registers + ipConfigurationRegister));
    camera.address = bigEndian32(registers + addressAt);
    camera.mask = bigEndian32(registers + maskAt);
    camera.gateway = bigEndian32(registers + gatewayAt);
    camera.vendor = text(registers + vendorAt, nameSize);
    camera.model = text(registers + modelAt, nameSize);
    camera.serialNumber = text(registers + serialAt, serialSize);
    camera.userName = text(registers + userNameRegister, userNameSize);
    return camera;
}

std::string cameraId(const std::string& hardwareId) {
    std::string result = "DEV_";
    for (const char letter : hardwareId) {
        const auto code = static_cast<unsigned char>(letter);
        if (std::isalnum(code))
            result += static_cast<char>(std::toupper(code));
    }
    return result;
}

} // namespace gige
