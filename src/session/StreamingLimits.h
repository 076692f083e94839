// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "sdk/RealCameras.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace session {

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

/// Warns in the log where real cameras will lose frames for want of memory, or are missing for want
/// of permission, of each once; simulated ones need neither. Changes nothing by itself. Bound to
/// one thread.
class StreamingLimits {
public:
    explicit StreamingLimits(std::filesystem::path root = "/");

    /// To be called when cameras were found. Answers what there is to warn of now, logged or not.
    std::vector<std::string> check(OrvCPP::OrvSystem& system);

private:
    const std::filesystem::path m_root;
    bool m_hasWarnedOfUsbMemory = false;
    bool m_hasWarnedOfReceiveBuffer = false;
    bool m_hasWarnedOfUsbAccess = false;
};

} // namespace session
