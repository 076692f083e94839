// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/EthernetSettings.h"
#include "platform/KernelSettings.h"
#include "platform/NetworkCounters.h"
#include "sdk/RealCameras.h"
#include "session/StreamingLimits.h"
#include "session/UsbAccess.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// What was read of a host and of the cameras at it. Nothing stands for what cannot be read.
/// Addresses are in host byte order, speeds in bits per second.
namespace doctor {

using Number = std::optional<std::uint64_t>;

struct Subnet {
    /// Address of the host or camera in it.
    std::uint32_t address = 0;
    std::uint32_t mask = 0;

    bool contains(std::uint32_t other) const { return ((address ^ other) & mask) == 0; }
};

/// A network adapter of this host that is up and has an address, or that sends for one.
struct AdapterEvidence {
    std::string name;
    std::vector<Subnet> subnets;
    bool isLoopback = false;
    /// Bytes of the largest packet.
    Number mtu;
    /// The adapters that send for it: of a VLAN, a bond or a bridge.
    std::vector<std::string> lowerAdapters;
    /// 0: not known.
    std::int64_t speed = 0;
    std::optional<platform::LinkSettings> link;
    std::optional<platform::ReceiveRing> ring;
    std::optional<platform::InterruptCoalescing> coalescing;
    /// Not: the host of this virtual machine decides on its interrupts.
    bool mayCoalesce = true;
    Number reversePathFilter;
    /// Since the adapter exists.
    platform::NetworkCounters counters;
};

/// The program that controls a camera, as the camera tells it.
struct CameraController {
    /// Of the program's computer; 0: the camera does not tell.
    std::uint32_t address = 0;
    /// Its UDP port; 0: the camera does not tell.
    std::uint16_t port = 0;
};

/// What the test packets of a camera told of the way to this host. Sizes are bytes of a packet with
/// its IP and UDP headers.
struct PathEvidence {
    /// Why there was no test, a sentence; empty when there was.
    std::string untested;
    /// What the camera is set to.
    std::uint32_t packetSize = 0;
    /// At most the MTU of the adapter; 0: none arrived.
    std::uint32_t largestArrived = 0;
    /// Whether the camera is set to its packet size again.
    bool isRestored = true;
};

/// A GigE Vision camera that answered a broadcast, reachable or not.
struct NetworkCamera {
    /// As the camera SDK names it.
    std::string id;
    std::uint64_t macAddress = 0;
    std::uint32_t address = 0;
    std::uint32_t mask = 0;
    /// The adapter on which it answered, and the one by which packets to it leave this host; empty:
    /// there is none.
    std::string adapter;
    std::string routeAdapter;
    /// Whether it also answers at its address.
    bool isReachable = false;
    std::optional<CameraController> controller;
    PathEvidence path;
};

/// A camera as the camera SDK shows it.
struct StreamingCamera {
    std::string id;
    /// Not: another program has it, or it cannot be reached.
    bool isOpened = false;
    /// Why it could not be opened.
    std::string warning;
    /// Bytes per second that it may send.
    Number limit;
    /// Bytes of a GigE camera's packet with its IP and UDP headers.
    Number packetSize;
    /// Of a USB camera's link.
    Number usbSpeed;
};

/// What several cameras share: a network adapter or a USB host controller.
struct LinkEvidence {
    /// Names of its interfaces, as commands of this program take them.
    std::vector<std::string> interfaces;
    bool isUsb = false;
    /// 0: not known.
    std::uint64_t speed = 0;
    Number mtu;
    /// Name of the network adapter; empty where it is not known.
    std::string adapter;
    /// Bytes per second that others send on it, as far as that is known.
    double otherTraffic = 0;
    std::vector<StreamingCamera> cameras;
};

struct HostEvidence {
    std::vector<LinkEvidence> links;
    /// Why the rest was not read, a sentence; empty when it was.
    std::string unread;

    std::vector<AdapterEvidence> adapters;
    std::vector<NetworkCamera> networkCameras;
    std::vector<session::UsbCameraAccess> usbCameras;
    RealCameras cameras;
    session::StreamingMemory memory;
    /// Packets that the reverse-path filter has discarded since the start of the host.
    Number reversePathDropped;
    std::vector<platform::FrequencyControl> frequencies;
    /// File of this program, for commands.
    std::filesystem::path program;
};

} // namespace doctor
