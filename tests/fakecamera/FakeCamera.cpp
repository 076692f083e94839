// SPDX-License-Identifier: BSD-3-Clause
#include "tests/fakecamera/CameraRegisters.h"
#include "tests/fakecamera/ControlChannel.h"
#include "tests/fakecamera/Protocol.h"
#include "tests/fakecamera/StreamChannel.h"
#include "tests/fakecamera/UdpSocket.h"
#include "tests/fakecamera/WriteRules.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <map>
#include <stdexcept>
#include <string>

namespace {

using namespace fakecamera;

constexpr std::uint32_t bigEndianAndUtf8 = 0x80000001;
constexpr std::uint32_t persistentAddress = 1;

/// The options and their defaults. Speeds are in bytes per second, the frame rate is the sensor's.
std::map<std::string, std::string> parse(int count, char** arguments) {
    std::map<std::string, std::string> options{
        {"--address", "127.0.0.1"},
        {"--mac", "0"},
        {"--serial", "FC0001"},
        {"--vendor", "Fakeworks"},
        {"--model", "Fake GigE"},
        {"--user-id", ""},
        {"--genicam", FAKE_CAMERA_GENICAM},
        {"--width", "1024"},
        {"--height", "1024"},
        {"--frame-rate", "100"},
        {"--exposure", "5000"},
        {"--link-speed", "125000000"},
        {"--limit", "125000000"},
        {"--limit-minimum", "1000000"},
        {"--limit-maximum", "125000000"},
        {"--limit-increment", "1000"},
        {"--packet-size", "1400"},
        {"--first-frame-id", "1"},
        {"--extended-ids", "0"},
        {"--drop-every", "0"},
        {"--resend", "1"},
        {"--heartbeat", "3000"},
    };
    for (int i = 1; i < count; i += 2) {
        const auto option = options.find(arguments[i]);
        if (option == options.end() || i + 1 == count) {
            std::string known;
            for (const auto& [name, value] : options) {
                known += "\n  " + name + " " + value;
            }
            throw std::runtime_error(std::string("not an option with a value: ") + arguments[i] +
                                     "\nThe options and their defaults:" + known);
        }
        option->second = arguments[i + 1];
    }
    return options;
}

void fill(CameraRegisters& registers, const std::map<std::string, std::string>& options) {
    const auto number = [&options](const char* name) {
        return static_cast<std::uint32_t>(std::stoul(options.at(name)));
    };
    // What a host may set, too, and what must be possible to stream with.
    const auto set = [&](Register address, const char* name) {
        if (checkWrite(registers, address, number(name)) != protocol::Success) {
            throw std::runtime_error(std::string("not possible: ") + name + ' ' + options.at(name));
        }
        registers.write(address, number(name));
    };
    const std::uint32_t address = parseAddress(options.at("--address"));
    const bool extendedIds = options.at("--extended-ids") != "0";
    registers.write(Version, extendedIds ? 0x20000 : 0x10002);
    registers.write(DeviceMode, bigEndianAndUtf8);
    registers.write(AddressOptions, persistentAddress);
    registers.write(AddressOption, persistentAddress);
    registers.write(CurrentAddress, address);
    registers.write(CurrentMask, 0xffffff00);
    registers.write(MacHigh, 0x02fc);
    registers.write(MacLow, number("--mac") != 0 ? number("--mac") : address);
    registers.writeText(VendorName, 32, options.at("--vendor"));
    registers.writeText(ModelName, 32, options.at("--model"));
    registers.writeText(DeviceVersion, 32, "1.0");
    registers.writeText(UserId, 16, options.at("--user-id"));
    set(Width, "--width");
    set(Height, "--height");
    registers.write(SensorMicroseconds, 1000000 / std::max(1u, number("--frame-rate")));
    set(ExposureMicroseconds, "--exposure");
    registers.write(LinkSpeed, number("--link-speed"));
    registers.write(LimitMinimum, number("--limit-minimum"));
    registers.write(LimitMaximum, number("--limit-maximum"));
    registers.write(LimitIncrement, number("--limit-increment"));
    registers.write(Limit, number("--limit"));
    registers.write(LimitMode, 1);
    set(StreamPacketSize, "--packet-size");
    set(HeartbeatMilliseconds, "--heartbeat");
    registers.write(Capabilities, protocol::hasUserId | protocol::hasSerialNumber |
                                      protocol::canWriteMemory | protocol::canConcatenate |
                                      (number("--resend") == 0 ? 0 : protocol::canResend));
}

void serve(const std::map<std::string, std::string>& options) {
    CameraRegisters registers(options.at("--serial"), options.at("--genicam"));
    fill(registers, options);
    StreamOptions streaming;
    streaming.extendedIds = options.at("--extended-ids") != "0";
    streaming.firstFrameId = std::stoull(options.at("--first-frame-id"));
    streaming.dropEvery = std::stoull(options.at("--drop-every"));
    const std::uint32_t address = parseAddress(options.at("--address"));
    StreamChannel stream(registers, address, streaming);
    ControlChannel control(registers, stream, address);
    // Whoever started this may use the camera now.
    std::puts("ready");
    std::fflush(stdout);
    control.run();
}

} // namespace

/// A GigE Vision camera on one of this computer's addresses, until it is killed.
int main(int count, char** arguments) {
    try {
        serve(parse(count, arguments));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "fake-camera: %s\n", error.what());
        return 1;
    }
}
