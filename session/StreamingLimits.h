// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace OrvCPP {
class OrvSystem;
}

namespace session {

/// How many of the SDK's cameras are real ones: simulated cameras need nothing of the operating
/// system.
struct RealCameras {
    std::size_t gige = 0;
    std::size_t usb = 0;
};

/// Counts the cameras that are there at the moment.
RealCameras realCameras(OrvCPP::OrvSystem& system);

/// How much memory the operating system lets programs stream into; nothing where it does not tell.
struct StreamingMemory {
    /// For all USB devices together; 0 is as much as there is.
    std::optional<std::uint64_t> usbMegabytes;
    /// For one socket.
    std::optional<std::uint64_t> receiveBufferBytes;
};

/// Reads what Linux tells in its folders /proc and /sys below \p root.
StreamingMemory streamingMemory(const std::filesystem::path& root = "/");

/// What to tell a person whose cameras have too little memory, with the command that gives them
/// enough; nothing where they have enough.
std::optional<std::string> usbMemoryWarning(const RealCameras& cameras,
                                            const StreamingMemory& memory);
std::optional<std::string> receiveBufferWarning(const RealCameras& cameras,
                                                const StreamingMemory& memory);

/// Warns in the log where cameras will lose frames for want of memory, of each kind of memory once.
/// Changes nothing by itself. Bound to one thread.
class StreamingLimits {
public:
    explicit StreamingLimits(std::filesystem::path root = "/");

    /// To be called when cameras were found.
    void check(OrvCPP::OrvSystem& system);

private:
    const std::filesystem::path m_root;
    bool m_hasWarnedOfUsbMemory = false;
    bool m_hasWarnedOfReceiveBuffer = false;
};

} // namespace session
