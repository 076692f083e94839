// SPDX-License-Identifier: BSD-3-Clause
#include "session/StreamingLimits.h"

#include "logging/Log.h"
#include "platform/HostCommands.h"
#include "platform/Sysfs.h"
#include "platform/UdpSocket.h"
#include "session/UsbAccess.h"

#include <QtGlobal>

#include <utility>

namespace session {

namespace {

/// Memory for the frames of one USB camera that are being received.
constexpr std::uint64_t megabytesPerUsbCamera = 16;
constexpr std::uint64_t wantedReceiveBuffer = platform::streamReceiveBuffer;

constexpr char context[] = "StreamingLimits";

void warnOnce(const std::optional<MessageText>& warning, bool& hasWarned) {
    if (!warning || hasWarned)
        return;
    logWarning(warning->english());
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

std::optional<MessageText> usbMemoryWarning(const RealCameras& cameras,
                                            const StreamingMemory& memory) {
    const std::uint64_t needed = usbMegabytesFor(cameras.usb);
    const std::uint64_t granted = memory.usbMegabytes.value_or(0);
    if (granted == 0 || granted >= needed)
        return std::nullopt;
    return MessageText(
        context,
        QT_TRANSLATE_NOOP(
            "StreamingLimits",
            "USB cameras may lose frames: they need %1 MB of USB memory (16 MB each), "
            "and the system allows %2 MB. To raise it: %3"),
        {std::to_string(needed), std::to_string(granted), platform::usbMemoryCommand(needed)});
}

std::optional<MessageText> receiveBufferWarning(const RealCameras& cameras,
                                                const StreamingMemory& memory) {
    const std::uint64_t granted = memory.receiveBufferBytes.value_or(wantedReceiveBuffer);
    if (cameras.gige == 0 || memory.mayOpenPacketSockets || granted >= wantedReceiveBuffer)
        return std::nullopt;
    constexpr std::uint64_t kilobyte = 1024;
    return MessageText(
        context,
        QT_TRANSLATE_NOOP(
            "StreamingLimits",
            "GigE cameras may lose frames: each stream asks for a receive buffer of %1 "
            "KB, and the system allows %2 KB. To raise it: %3. Or, to receive without "
            "it, by a packet ring: %4"),
        {std::to_string(wantedReceiveBuffer / kilobyte), std::to_string(granted / kilobyte),
         platform::receiveBufferCommand(wantedReceiveBuffer),
         platform::packetSocketCommand(platform::programFile())});
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
            warnings.push_back(warning->translated());
    return warnings;
}

} // namespace session
