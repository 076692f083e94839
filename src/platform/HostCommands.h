// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

/// Commands by which a person changes this Linux host, for warnings: one line each, for a shell.
/// docs/real-cameras.md has the same ones. All functions are reentrant.
namespace platform {

/// File of the memory for all USB transfers in MB, and of the largest receive buffer of a socket in
/// bytes, below the root of the file system.
constexpr const char* usbMemoryFile = "sys/module/usbcore/parameters/usbfs_memory_mb";
constexpr const char* receiveBufferFile = "proc/sys/net/core/rmem_max";

/// Raises the memory for all USB transfers until the next start of the host.
std::string usbMemoryCommand(std::uint64_t megabytes);
/// Raises the largest receive buffer of a socket until the next start of the host.
std::string receiveBufferCommand(std::uint64_t bytes);
/// Permits packet sockets to the program in a file, as long as the file is not changed.
std::string packetSocketCommand(const std::filesystem::path& program);
/// Permits USB3 Vision cameras to the user at the computer and to the group "video".
std::string usbPermissionCommand();

/// The file of this program; empty where the system does not tell.
std::filesystem::path programFile();
/// Whether this process may open packet sockets, as the kernel's files below \p root tell
/// (CAP_NET_RAW); false where they do not.
bool mayOpenPacketSockets(const std::filesystem::path& root = "/");

} // namespace platform
