// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/CameraAddress.h"
#include "fake-camera/CameraRegisters.h"
#include "fake-camera/ControlChannel.h"
#include "fake-camera/Description.h"
#include "fake-camera/Options.h"
#include "fake-camera/Protocol.h"
#include "fake-camera/StreamChannel.h"
#include "fake-camera/UserSets.h"
#include "platform/Ipv4Address.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/signalfd.h>
#include <unistd.h>

namespace {

using namespace fakecamera;

constexpr int exitFailed = 1;
constexpr int exitWrongUsage = 2;
constexpr std::uint32_t bigEndianAndUtf8 = 0x80000001;

/// A descriptor that is readable after SIGINT or SIGTERM. Blocks both for threads that start later.
class EndSignal {
public:
    EndSignal() {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGINT);
        sigaddset(&signals, SIGTERM);
        sigprocmask(SIG_BLOCK, &signals, nullptr);
        m_descriptor = signalfd(-1, &signals, SFD_CLOEXEC);
        if (m_descriptor < 0)
            throw std::system_error(errno, std::generic_category(), "signalfd");
    }
    ~EndSignal() { close(m_descriptor); }
    EndSignal(const EndSignal&) = delete;
    EndSignal& operator=(const EndSignal&) = delete;

    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor = -1;
};

std::string readDescription(const std::string& file) {
    if (file.empty())
        return builtInDescription;
    errno = 0;
    std::ifstream stream(file);
    std::string text(std::istreambuf_iterator<char>(stream), {});
    if (text.empty())
        throw std::runtime_error(
            "--genicam: cannot read \"" + file +
            "\": " + (errno == 0 ? "it is empty" : std::generic_category().message(errno)));
    return text;
}

void fill(CameraRegisters& registers, const Options& options) {
    const auto set = [&](Register address, const char* name) {
        registers.write(address, options.number32(name));
    };
    registers.write(Version, options.isOn("--extended-ids") ? 0x20000 : 0x10002);
    registers.write(DeviceMode, bigEndianAndUtf8);
    registers.write(MacHigh, 0x02fc);
    registers.write(MacLow, options.isOn("--mac") ? options.number32("--mac") : options.address());
    registers.writeText(VendorName, 32, options.text("--vendor"));
    registers.writeText(ModelName, 32, options.text("--model"));
    registers.writeText(DeviceVersion, 32, SPANLET_VERSION);
    registers.writeText(SerialNumber, 16, options.text("--serial"));
    registers.writeText(UserId, 16, options.text("--user-id"));
    set(Width, "--width");
    set(Height, "--height");
    registers.write(SensorMicroseconds, 1'000'000 / options.number32("--frame-rate"));
    set(ExposureMicroseconds, "--exposure");
    set(LinkSpeed, "--link-speed");
    set(LimitMinimum, "--limit-minimum");
    set(LimitMaximum, "--limit-maximum");
    set(LimitIncrement, "--limit-increment");
    set(Limit, "--limit");
    set(HasLimit, "--throughput-limit");
    set(LimitMode, "--throughput-limit");
    set(StreamPacketSize, "--packet-size");
    set(HeartbeatMilliseconds, "--heartbeat");
    set(AnswerDelayMilliseconds, "--answer-delay");
    set(PendingMilliseconds, "--pending");
    set(PendingAfterCommands, "--pending-after");
    if (!options.text("--genicam-url").empty())
        registers.writeText(DescriptionUrl, descriptionUrlSize, options.text("--genicam-url"));
    registers.write(Capabilities, protocol::hasUserId | protocol::hasSerialNumber |
                                      protocol::canWriteMemory | protocol::canConcatenate |
                                      (options.isOn("--resend") ? protocol::canResend : 0));
}

/// Programs that start a camera wait for this line.
void tellReady(const Options& options, std::uint32_t address) {
    std::printf("ready: GigE Vision camera \"%s %s\", serial number \"%s\", on %s\n",
                options.text("--vendor").c_str(), options.text("--model").c_str(),
                options.text("--serial").c_str(), platform::addressText(address).c_str());
    std::fflush(stdout);
}

void serve(const Options& options) {
    const EndSignal end;
    CameraRegisters registers(readDescription(options.text("--genicam")));
    fill(registers, options);
    UserSets sets(registers, options.text("--user-sets"));
    sets.begin();
    CameraAddress address(registers, options.text("--adapter"), options.text("--memory"));
    address.begin(options.address());
    const StreamOptions streamOptions{options.isOn("--extended-ids") || options.isOn("--parts"),
                                      options.number32("--parts"),
                                      options.number("--first-frame-id"),
                                      options.number("--drop-every"),
                                      options.number("--skip-every"),
                                      options.number32("--loss")};
    bool isTold = false;
    for (bool isMoved = true; isMoved;) {
        StreamChannel stream(registers, registers.read(CurrentAddress), streamOptions);
        ControlChannel control(registers, stream, address, sets);
        if (!std::exchange(isTold, true))
            tellReady(options, registers.read(CurrentAddress));
        isMoved = control.run(end.descriptor());
        if (isMoved)
            address.takeCurrent();
    }
}

/// Why the sockets of a camera cannot be opened.
std::string explained(const std::system_error& error, const std::string& address) {
    if (error.code() == std::errc::address_not_available)
        return "--address: no network adapter of this computer has " + address;
    if (error.code() == std::errc::address_in_use)
        return "--address: port " + std::to_string(protocol::controlPort) + " of " + address +
               " is in use, by another fake camera?";
    return error.what();
}

int run(const std::vector<std::string>& arguments) {
    const auto has = [&](const char* name) {
        return std::find(arguments.begin(), arguments.end(), name) != arguments.end();
    };
    if (has("--help")) {
        std::fputs(Options::help().c_str(), stdout);
        return 0;
    }
    if (has("--version")) {
        std::puts("fake-camera " SPANLET_VERSION);
        return 0;
    }
    const Options options(arguments);
    try {
        serve(options);
    } catch (const std::system_error& error) {
        throw std::runtime_error(explained(error, options.text("--address")));
    }
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    try {
        return run({arguments + 1, arguments + count});
    } catch (const UsageError& error) {
        std::fprintf(stderr, "fake-camera: %s\n", error.what());
        return exitWrongUsage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "fake-camera: %s\n", error.what());
        return exitFailed;
    }
}
