// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "logging/MessageText.h"
#include "sdk/RealCameras.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace session {

/// Memory that the operating system allows for streaming; nothing where it does not tell.
struct StreamingMemory {
    /// For all USB devices together; 0 is no limit.
    std::optional<std::uint64_t> usbMegabytes;
    /// Largest receive buffer of one socket.
    std::optional<std::uint64_t> receiveBufferBytes;
    /// Then GigE cameras are received by a packet ring, which needs no receive buffer.
    bool mayOpenPacketSockets = false;
};

/// Reads Linux's folders /proc and /sys below \p root.
StreamingMemory streamingMemory(const std::filesystem::path& root = "/");

/// Memory in MB that USB cameras need for the frames that are being received.
std::uint64_t usbMegabytesFor(std::size_t cameras);

/// Warning for a person, with the command that raises the limit; nothing where the cameras have
/// enough memory.
std::optional<MessageText> usbMemoryWarning(const RealCameras& cameras,
                                            const StreamingMemory& memory);
std::optional<MessageText> receiveBufferWarning(const RealCameras& cameras,
                                                const StreamingMemory& memory);

/// Logs a warning, each once, when real cameras have too little memory and may lose frames, or when
/// this user has no permission to open USB cameras. Bound to one thread.
class StreamingLimits {
public:
    explicit StreamingLimits(std::filesystem::path root = "/");

    /// Call after cameras were found. Answers all warnings that hold now, logged before or not, in
    /// the language of the application; the log has them in English.
    std::vector<std::string> check(OrvCPP::OrvSystem& system);

private:
    const std::filesystem::path m_root;
    bool m_hasWarnedOfUsbMemory = false;
    bool m_hasWarnedOfReceiveBuffer = false;
    bool m_hasWarnedOfUsbAccess = false;
};

} // namespace session
