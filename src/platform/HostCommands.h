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

/// Bytes of a large packet that adapters and switches for cameras can pass on.
constexpr std::uint64_t jumboPacket = 9000;

/// A word of a shell's command line: in apostrophes where the shell would take it apart.
std::string shellWord(const std::string& text);

/// Raises the memory for all USB transfers until the next start of the host.
std::string usbMemoryCommand(std::uint64_t megabytes);
/// Raises the largest receive buffer of a socket until the next start of the host.
std::string receiveBufferCommand(std::uint64_t bytes);
/// Permits packet sockets to the program in a file, as long as the file is not changed.
std::string packetSocketCommand(const std::filesystem::path& program);
/// Loads the kernel's module that shows USB transfers, until the next start of the host.
std::string usbMonitorCommand();
/// Permits this user to read \p file, one of that module's, until the next start of the host.
std::string usbMonitorPermissionCommand(const std::filesystem::path& file);
/// Permits USB3 Vision cameras to the user at the computer and to the group "video".
std::string usbPermissionCommand();
/// Lets an adapter send and receive packets of up to \p bytes whole, until it is made anew, like
/// the next ones.
std::string mtuCommand(const std::string& adapter, std::uint64_t bytes = jumboPacket);
/// Gives an adapter room for \p packets that it has received.
std::string receiveRingCommand(const std::string& adapter, std::uint32_t packets);
/// Lets an adapter wait for more packets before it interrupts a processor.
std::string coalescingCommand(const std::string& adapter, std::uint32_t microseconds);
/// Lets an adapter negotiate speed and duplex with the other end again.
std::string negotiationCommand(const std::string& adapter);
/// Lets an adapter receive packets whose way back leads through another one.
std::string reversePathCommand(const std::string& adapter);
/// Keeps all processors at their highest frequency until the next start of the host.
std::string performanceGovernorCommand();
/// Names the program that has opened a UDP port.
std::string portOwnerCommand(std::uint16_t port);

/// The file of this program; empty where the system does not tell.
std::filesystem::path programFile();
/// Whether this process may open packet sockets, as the kernel's files below \p root tell
/// (CAP_NET_RAW); false where they do not.
bool mayOpenPacketSockets(const std::filesystem::path& root = "/");

} // namespace platform
