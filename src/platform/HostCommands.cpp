// SPDX-License-Identifier: BSD-3-Clause
#include "platform/HostCommands.h"

#include <charconv>
#include <fstream>

namespace platform {

namespace {

/// Number of CAP_NET_RAW in the kernel's sets of capabilities (linux/capability.h).
constexpr unsigned rawNetworkCapability = 13;

} // namespace

std::string shellWord(const std::string& text) {
    constexpr const char* plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                  "/._-+";
    if (!text.empty() && text.find_first_not_of(plain) == std::string::npos)
        return text;
    std::string result = "'";
    for (const char letter : text)
        result += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
    return result + '\'';
}

std::string usbMemoryCommand(std::uint64_t megabytes) {
    return "echo " + std::to_string(megabytes) + " | sudo tee /" + usbMemoryFile;
}

std::string receiveBufferCommand(std::uint64_t bytes) {
    return "sudo sysctl -w net.core.rmem_max=" + std::to_string(bytes);
}

std::string packetSocketCommand(const std::filesystem::path& program) {
    return "sudo setcap cap_net_raw+ep " + shellWord(program.string());
}

std::string usbMonitorCommand() {
    return "sudo modprobe usbmon";
}

std::string usbMonitorPermissionCommand(const std::filesystem::path& file) {
    return "sudo chown \"$USER\" " + shellWord(file.string());
}

/// The number is below that of the system's 73-seat-late.rules, which act on the tag. The rule
/// matches the control interface of USB3 Vision: many webcams have the same device class.
std::string usbPermissionCommand() {
    return "echo 'SUBSYSTEM==\"usb\", ENV{ID_USB_INTERFACES}==\"*:ef0500:*\", GROUP=\"video\", "
           "TAG+=\"uaccess\"' | sudo tee /etc/udev/rules.d/70-usb3vision.rules && "
           "sudo udevadm control --reload && sudo udevadm trigger --subsystem-match=usb";
}

std::string mtuCommand(const std::string& adapter, std::uint64_t bytes) {
    return "sudo ip link set dev " + shellWord(adapter) + " mtu " + std::to_string(bytes);
}

std::string receiveRingCommand(const std::string& adapter, std::uint32_t packets) {
    return "sudo ethtool -G " + shellWord(adapter) + " rx " + std::to_string(packets);
}

std::string coalescingCommand(const std::string& adapter, std::uint32_t microseconds) {
    return "sudo ethtool -C " + shellWord(adapter) + " rx-usecs " + std::to_string(microseconds);
}

std::string negotiationCommand(const std::string& adapter) {
    return "sudo ethtool -s " + shellWord(adapter) + " autoneg on";
}

/// The higher one of the values for all adapters and for this one counts. With slashes, since the
/// name of an adapter may have a dot.
std::string reversePathCommand(const std::string& adapter) {
    return "sudo sysctl -w net/ipv4/conf/all/rp_filter=0 net/ipv4/conf/" + shellWord(adapter) +
           "/rp_filter=0";
}

std::string performanceGovernorCommand() {
    return "echo performance | sudo tee /sys/devices/system/cpu/cpu*/cpufreq/scaling_governor";
}

std::string portOwnerCommand(std::uint16_t port) {
    return "sudo ss -Hunap 'sport = :" + std::to_string(port) + "'";
}

std::filesystem::path programFile() {
    std::error_code none;
    return std::filesystem::read_symlink("/proc/self/exe", none);
}

bool mayOpenPacketSockets(const std::filesystem::path& root) {
    std::ifstream status(root / "proc/self/status");
    const std::string key = "CapEff:\t";
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind(key, 0) != 0)
            continue;
        std::uint64_t capabilities = 0;
        std::from_chars(line.data() + key.size(), line.data() + line.size(), capabilities, 16);
        return (capabilities >> rawNetworkCapability & 1U) != 0;
    }
    return false;
}

} // namespace platform
