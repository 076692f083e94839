// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/Options.h"

#include "fake-camera/CameraRegisters.h"
#include "fake-camera/WriteRules.h"
#include "platform/Ipv4Address.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <string_view>

namespace fakecamera {

namespace {

enum class Kind { Number, Text, Address, File };

struct Option {
    /// Title above this option and the next ones in the help; null: the same as above.
    const char* group;
    const char* name;
    const char* placeholder;
    Kind kind;
    const char* defaultValue;
    /// Range of a number; length of a text in bytes.
    std::uint64_t minimum;
    std::uint64_t maximum;
    const char* unit;
    const char* help;
};

constexpr std::uint64_t any32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t any64 = std::numeric_limits<std::uint64_t>::max();

Option text(const char* group, const char* name, const char* defaultValue, std::uint64_t length,
            const char* help) {
    return {group, name, "TEXT", Kind::Text, defaultValue, 0, length, " bytes", help};
}

Option number(const char* group, const char* name, const char* defaultValue, std::uint64_t minimum,
              std::uint64_t maximum, const char* unit, const char* help) {
    return {group, name, "N", Kind::Number, defaultValue, minimum, maximum, unit, help};
}

Option registerValue(const char* group, const char* name, const char* defaultValue,
                     Register address, const char* unit, const char* help) {
    const WriteRange range = writeRange(address);
    return number(group, name, defaultValue, range.minimum, range.maximum, unit, help);
}

const std::vector<Option>& allOptions() {
    static const std::vector<Option> options{
        {"Identity", "--address", "ADDRESS", Kind::Address, "127.0.0.1", 0, 0, "",
         "IPv4 address of the camera: one of this computer"},
        {nullptr, "--adapter", "NAME", Kind::Text, "", 0, 15, " bytes",
         "network adapter that gets the address of the camera"},
        {nullptr, "--memory", "FILE", Kind::File, "", 0, 0, "",
         "file that keeps the persistent address"},
        {nullptr, "--user-sets", "FILE", Kind::File, "", 0, 0, "", "file that keeps the user sets"},
        number(nullptr, "--mac", "0", 0, any32, "",
               "last four bytes of the MAC address; 0: as the address"),
        text(nullptr, "--vendor", "Fakeworks", 32, "name of the maker"),
        text(nullptr, "--model", "Fake GigE", 32, "name of the model"),
        text(nullptr, "--serial", "FC0001", 16, "serial number"),
        text(nullptr, "--user-id", "", 16, "name that the user gave the camera"),
        {nullptr, "--genicam", "FILE", Kind::File, "", 0, 0, "",
         "GenICam description (XML), not the built-in one"},
        text(nullptr, "--genicam-url", "", 511, "place of the description that the camera tells"),

        registerValue("Image", "--width", "1024", Width, " pixels", "width of a frame"),
        registerValue(nullptr, "--height", "1024", Height, " pixels", "height of a frame"),
        registerValue(nullptr, "--exposure", "5000", ExposureMicroseconds, " us", "exposure time"),
        number(nullptr, "--frame-rate", "100", 1, 1'000'000, " frames/s",
               "largest frame rate of the sensor"),

        number("Bandwidth and limit", "--link-speed", "125000000", 1, any32, " bytes/s",
               "speed of the camera's link"),
        number(nullptr, "--throughput-limit", "1", 0, 1, "",
               "0: no limit, only a packet delay (GevSCPD)"),
        number(nullptr, "--limit", "125000000", 1, any32, " bytes/s",
               "throughput limit (DeviceLinkThroughputLimit)"),
        number(nullptr, "--limit-minimum", "1000000", 1, any32, " bytes/s",
               "smallest value of the limit"),
        number(nullptr, "--limit-maximum", "125000000", 1, any32, " bytes/s",
               "largest value of the limit"),
        number(nullptr, "--limit-increment", "1000", 1, any32, " bytes/s", "step of the limit"),

        registerValue("Stream and faults", "--packet-size", "1400", StreamPacketSize, " bytes",
                      "size of a stream packet with its IP and UDP headers"),
        number(nullptr, "--first-frame-id", "1", 1, any64, "",
               "number of the first frame of an acquisition"),
        number(nullptr, "--extended-ids", "0", 0, 1, "", "1: frame numbers of 64 bits, not 16"),
        number(nullptr, "--parts", "0", 0, 4, "",
               "parts of a frame (with 64-bit frame numbers); 0: an image"),
        number(nullptr, "--drop-every", "0", 0, any64, " packets",
               "drop each N-th data packet, resend it on request; 0: none"),
        number(nullptr, "--skip-every", "0", 0, any64, " frames",
               "leave out a frame number after each N frames; 0: none"),
        number(nullptr, "--loss", "0", 0, 90, " percent",
               "lose packets at random, also those that are resent"),
        number(nullptr, "--resend", "1", 0, 1, "", "0: refuse to resend packets"),

        registerValue("Control", "--heartbeat", "3000", HeartbeatMilliseconds, " ms",
                      "silence after which a host loses control"),
        number(nullptr, "--answer-delay", "0", 0, 60'000, " ms", "time before each answer"),
        number(nullptr, "--pending", "0", 0, 65'535, " ms",
               "only ask for so much time instead of answering; 0: none"),
        number(nullptr, "--pending-after", "0", 0, any32, " commands",
               "commands that are answered before --pending begins"),
    };
    return options;
}

/// "16 to 2048 pixels"; empty for other than numbers and texts.
std::string range(const Option& option) {
    if (option.kind == Kind::Number)
        return std::to_string(option.minimum) + " to " + std::to_string(option.maximum) +
               option.unit;
    return option.kind == Kind::Text ? "at most " + std::to_string(option.maximum) + option.unit
                                     : std::string();
}

std::string allowed(const Option& option) {
    switch (option.kind) {
    case Kind::Number:
        return "a whole number from " + range(option);
    case Kind::Text:
        return "a text of " + range(option);
    case Kind::Address:
        return "an IPv4 address like 127.0.0.2";
    case Kind::File:
        break;
    }
    return "the name of a file";
}

std::optional<std::uint64_t> parseNumber(const std::string& text) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number);
    if (parsed.ec != std::errc() || parsed.ptr != end)
        return std::nullopt;
    return number;
}

bool isValid(const Option& option, const std::string& value) {
    switch (option.kind) {
    case Kind::Number: {
        const auto number = parseNumber(value);
        return number && *number >= option.minimum && *number <= option.maximum;
    }
    case Kind::Text:
        return value.size() <= option.maximum;
    case Kind::Address:
        return platform::parseAddress(value).has_value();
    case Kind::File:
        break;
    }
    return !value.empty();
}

const Option& findOption(const std::string& name) {
    const auto& options = allOptions();
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&name](const Option& option) { return option.name == name; });
    if (found == options.end())
        throw UsageError("unknown option \"" + name + "\" (--help lists all)");
    return *found;
}

std::string helpOf(const Option& option) {
    constexpr std::size_t column = 23;
    const std::string left = std::string("  ") + option.name + ' ' + option.placeholder;
    const std::string gap(column > left.size() ? column - left.size() : 2, ' ');
    const std::string limits = range(option);
    std::string text = option.group == nullptr ? "" : std::string("\n") + option.group + ":\n";
    text += left + gap + option.help + '\n';
    if (option.kind == Kind::File)
        return text;
    text += std::string(column, ' ') + limits + (limits.empty() ? "" : "; ") + "default ";
    return text + (*option.defaultValue == '\0' ? "none" : option.defaultValue) + '\n';
}

} // namespace

Options::Options(const std::vector<std::string>& arguments) {
    for (const Option& option : allOptions())
        m_values[option.name] = option.defaultValue;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        const std::size_t equals = argument->find('=');
        const Option& option = findOption(argument->substr(0, equals));
        if (equals == std::string::npos && argument + 1 == arguments.end())
            throw UsageError(std::string(option.name) + " needs a value: " + allowed(option));
        const std::string value =
            equals == std::string::npos ? *++argument : argument->substr(equals + 1);
        if (!isValid(option, value))
            throw UsageError(std::string(option.name) + ": \"" + value + "\" is not " +
                             allowed(option));
        m_values[option.name] = value;
    }
    if (!isOn("--extended-ids") && number("--first-frame-id") > 0xffff)
        throw UsageError("--first-frame-id: " + text("--first-frame-id") +
                         " is above 65535, the largest number without --extended-ids 1");
    if (number("--limit") < number("--limit-minimum") ||
        number("--limit") > number("--limit-maximum"))
        throw UsageError("--limit: " + text("--limit") +
                         " is not within --limit-minimum and --limit-maximum, " +
                         text("--limit-minimum") + " to " + text("--limit-maximum") + " bytes/s");
}

std::uint64_t Options::number(const std::string& name) const {
    return parseNumber(text(name)).value();
}

std::uint32_t Options::number32(const std::string& name) const {
    return static_cast<std::uint32_t>(number(name));
}

std::uint32_t Options::address() const {
    return platform::parseAddress(text("--address")).value();
}

std::string Options::help() {
    std::string text =
        "Usage: fake-camera [OPTION VALUE | OPTION=VALUE]...\n"
        "\n"
        "A GigE Vision camera without hardware. It answers discovery, control and GenICam\n"
        "on one of this computer's IPv4 addresses, and streams real packets, paced by its\n"
        "throughput limit and its packet delay. It resends packets, ends the control of a\n"
        "silent host, and drops packets on request. Several cameras run on several\n"
        "addresses (127.0.0.2, ...).\n"
        "It prints a line that begins with \"ready\", and runs until SIGINT (Ctrl+C) or\n"
        "SIGTERM.\n";
    for (const Option& option : allOptions())
        text += helpOf(option);
    return text + "\n"
                  "  --help               print this text\n"
                  "  --version            print the version\n"
                  "\n"
                  "Exit status: 0 after a signal, 1 when the camera cannot run, 2 for a wrong\n"
                  "command line.\n";
}

} // namespace fakecamera
