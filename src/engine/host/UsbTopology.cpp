// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/UsbTopology.h"

#include "platform/PciLocation.h"
#include "platform/UsbDevice.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <regex>

namespace host {

namespace {

std::optional<std::string> firstMatch(const std::string& text, const char* pattern,
                                      std::regex::flag_type flags = std::regex::ECMAScript) {
    std::smatch match;
    if (!std::regex_search(text, match, std::regex(pattern, flags)))
        return std::nullopt;
    return match[1].str();
}

std::optional<std::uint32_t> number(const std::optional<std::string>& digits, int base) {
    if (!digits)
        return std::nullopt;
    std::uint32_t value = 0;
    const auto parsed =
        std::from_chars(digits->data(), digits->data() + digits->size(), value, base);
    if (parsed.ec != std::errc())
        return std::nullopt;
    return value;
}

/// Replaces units beyond ASCII by question marks, which no pattern matches.
std::string asciiText(const std::u16string& text) {
    std::string ascii(text.size(), '?');
    std::transform(text.begin(), text.end(), ascii.begin(),
                   [](char16_t unit) { return unit < 0x80 ? static_cast<char>(unit) : '?'; });
    return ascii;
}

constexpr std::array<std::uint64_t, 4> codedSpeeds{1'500'000, 12'000'000, 480'000'000,
                                                   5'000'000'000};

} // namespace

UsbIdentity parseDevicePath(const std::string& path) {
    const auto match = [&path](const char* pattern) {
        return firstMatch(path, pattern, std::regex::ECMAScript | std::regex::icase);
    };
    return {number(match("VID_([0-9A-F]{4})"), 16), number(match("PID_([0-9A-F]{4})"), 16),
            match("VID_[0-9A-F]{4}&PID_[0-9A-F]{4}#([0-9A-Z]+)#")};
}

bool isCamera(const UsbIdentity& identity, const std::vector<std::uint32_t>& interfaceClasses) {
    const bool isTheMakers =
        identity.vendorId == cameraVendorId && identity.productId == cameraProductId;
    return isTheMakers || std::find(interfaceClasses.begin(), interfaceClasses.end(),
                                    platform::usb3VisionControl) != interfaceClasses.end();
}

std::optional<std::uint32_t> portNumber(const std::u16string& location) {
    return number(firstMatch(asciiText(location), "Port_#(\\d+)"), 10);
}

bool isOnPciBus(const std::string& instanceId) {
    return instanceId.rfind("PCI", 0) == 0;
}

std::string controllerKey(std::uint32_t bus, std::uint32_t address) {
    return platform::PciLocation{bus, address >> 16U, address & 0xFFFFU}.key();
}

std::optional<std::uint64_t> bitsPerSecond(const PortConnection& connection,
                                           std::optional<std::uint32_t> flags) {
    constexpr std::uint32_t deviceConnected = 1;
    constexpr std::uint32_t superSpeedOrHigher = 0b0101; // operating at super speed, or plus
    constexpr std::size_t high = 2;
    constexpr std::size_t super = 3;

    if (connection.status != deviceConnected)
        return std::nullopt;
    if (connection.bitsPerSecond != 0)
        return connection.bitsPerSecond;
    std::size_t speed = connection.speed;
    if (speed == high && (flags.value_or(0) & superSpeedOrHigher) != 0)
        speed = super;
    if (speed >= codedSpeeds.size())
        return std::nullopt;
    return codedSpeeds[speed];
}

} // namespace host
