// SPDX-License-Identifier: BSD-3-Clause
#include "session/StreamingLimits.h"

#include "logging/Log.h"
#include "platform/HostCommands.h"
#include "platform/Sysfs.h"
#include "platform/UdpSocket.h"
#include "session/UsbAccess.h"

#include <utility>

namespace session {

namespace {

/// Memory for the frames of one USB camera that are being received.
constexpr std::uint64_t megabytesPerUsbCamera = 16;
constexpr std::uint64_t wantedReceiveBuffer = platform::streamReceiveBuffer;

void warnOnce(const std::optional<std::string>& warning, bool& hasWarned) {
    if (!warning || hasWarned)
        return;
    logWarning(*warning);
    hasWarned = true;
}

} // namespace

StreamingMemory streamingMemory(const std::filesystem::path& root) {
    return {platform::sysfsNumber(root / platform::usbMemoryFile),
            platform::sysfsNumber(root / platform::receiveBufferFile),
            platform::mayOpenPacketSockets(root)};
}

std::uint64_t usbMegabytesFor(std::size_t cameras) {
    return megabytesPerUsbCamera * cameras;
}

std::optional<std::string> usbMemoryWarning(const RealCameras& cameras,
                                            const StreamingMemory& memory) {
    const std::uint64_t needed = usbMegabytesFor(cameras.usb);
    const std::uint64_t granted = memory.usbMegabytes.value_or(0);
    if (granted == 0 || granted >= needed)
        return std::nullopt;
    return "USB cameras may lose frames: they need " + std::to_string(needed) +
           " MB of USB memory (16 MB each), and the system allows " + std::to_string(granted) +
           " MB. To raise it: " + platform::usbMemoryCommand(needed);
}

std::optional<std::string> receiveBufferWarning(const RealCameras& cameras,
                                                const StreamingMemory& memory) {
    const std::uint64_t granted = memory.receiveBufferBytes.value_or(wantedReceiveBuffer);
    if (cameras.gige == 0 || memory.mayOpenPacketSockets || granted >= wantedReceiveBuffer)
        return std::nullopt;
    constexpr std::uint64_t kilobyte = 1024;
    return "GigE cameras may lose frames: each stream asks for a receive buffer of " +
           std::to_string(wantedReceiveBuffer / kilobyte) + " KB, and the system allows " +
           std::to_string(granted / kilobyte) +
           " KB. To raise it: " + platform::receiveBufferCommand(wantedReceiveBuffer) +
           ". Or, to receive without it, by a packet ring: " +
           platform::packetSocketCommand(platform::programFile());
}

StreamingLimits::StreamingLimits(std::filesystem::path root) : m_root(std::move(root)) {}

std::vector<std::string> StreamingLimits::check(OrvCPP::OrvSystem& system) {
    const RealCameras cameras = realCameras(system);
    const StreamingMemory memory = streamingMemory(m_root);
    const auto usb = usbMemoryWarning(cameras, memory);
    const auto receiveBuffer = receiveBufferWarning(cameras, memory);
    const auto access =
        cameras.areUsbSought ? usbAccessWarning(closedUsbCameras(m_root)) : std::nullopt;
    warnOnce(access, m_hasWarnedOfUsbAccess);
    warnOnce(usb, m_hasWarnedOfUsbMemory);
    warnOnce(receiveBuffer, m_hasWarnedOfReceiveBuffer);
    std::vector<std::string> warnings;
    for (const auto& warning : {access, usb, receiveBuffer})
        if (warning)
            warnings.push_back(*warning);
    return warnings;
}

} // namespace session
