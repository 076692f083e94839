// SPDX-License-Identifier: BSD-3-Clause
#include "tests/fakecamera/CameraRegisters.h"
#include "tests/fakecamera/ControlChannel.h"
#include "tests/fakecamera/StreamChannel.h"
#include "tests/fakecamera/UdpSocket.h"

#include <cstdio>
#include <exception>
#include <map>
#include <stdexcept>
#include <string>

namespace {

using namespace fakecamera;

/// The options and their defaults. Speeds are in bytes per second, the frame rate is the sensor's.
std::map<std::string, std::string> parse(int count, char** arguments) {
    std::map<std::string, std::string> options{
        {"--address", "127.0.0.1"},
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
    const std::uint32_t address = parseAddress(options.at("--address"));
    registers.write(CurrentAddress, address);
    registers.write(CurrentMask, 0xffffff00);
    registers.write(MacHigh, 0x02fc);
    registers.write(MacLow, address);
    registers.writeText(VendorName, 32, options.at("--vendor"));
    registers.writeText(ModelName, 32, options.at("--model"));
    registers.writeText(DeviceVersion, 32, "1.0");
    registers.writeText(UserId, 16, options.at("--user-id"));
    registers.write(Width, number("--width"));
    registers.write(Height, number("--height"));
    registers.write(SensorMicroseconds, 1000000 / number("--frame-rate"));
    registers.write(ExposureMicroseconds, number("--exposure"));
    registers.write(LinkSpeed, number("--link-speed"));
    registers.write(LimitMinimum, number("--limit-minimum"));
    registers.write(LimitMaximum, number("--limit-maximum"));
    registers.write(LimitIncrement, number("--limit-increment"));
    registers.write(Limit, number("--limit"));
    registers.write(LimitMode, 1);
    registers.write(StreamPacketSize, number("--packet-size"));
    registers.write(HeartbeatMilliseconds, number("--heartbeat"));
    // Writes memory, and sends packets again where it may.
    registers.write(Capabilities, number("--resend") == 0 ? 0x2 : 0x6);
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
    ControlChannel(registers, stream, address).run();
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
