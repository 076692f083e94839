// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/NetworkCounters.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Where frames or packets were lost, from the camera to this program.
enum class LossPlace {
    /// The camera left out numbers of frames, which it never sent, or waits for triggers.
    Camera,
    /// Between the camera and the adapter: cables and switches. A packet that the camera numbers
    /// and does not send looks the same.
    Wire,
    /// The network adapter.
    Adapter,
    /// The operating system, between the adapter and this program.
    Kernel,
    /// The path to this host does not carry packets of the camera's size.
    Path,
    /// This program had no free buffer when a frame began.
    Program,
    /// The USB link or the memory that the system allows for it.
    UsbLink,
    /// The counters do not tell.
    Unknown
};

/// "camera", "wire", ... "usb", "unknown".
const char* nameOf(LossPlace place);

/// What is known of one camera's stream, since it began. Nothing stands for what cannot be read.
struct CameraEvidence {
    using Count = std::optional<std::uint64_t>;

    std::string id;
    bool isUsb = false;
    /// What this program counted: delivered frames, those of them that were not whole, and numbers
    /// that were left out.
    std::uint64_t framesReceived = 0;
    std::uint64_t framesIncomplete = 0;
    std::uint64_t framesLost = 0;
    /// Of a camera without frames: whether it waits for triggers.
    bool isTriggered = false;

    /// What the stream counted.
    Count streamFramesLost;
    Count gaps;
    /// Of which leader and trailer came, and no full packet of data.
    Count framesHollow;
    Count framesWithoutBuffer;
    Count packetsReceived;
    Count packetsMissing;
    Count packetsResent;
    Count packetsDuplicate;
    Count packetsLate;
    Count packetsUnavailable;
    /// Of all streams of the adapter when \p usesRing.
    Count packetsDropped;

    /// Whether packets come from a ring that the streams of an adapter share, or from a UDP socket.
    std::optional<bool> usesRing;
    /// Bytes of a packet with its IP and UDP headers.
    Count packetSize;
    /// KB that the system grants the UDP socket.
    Count receiveBuffer;
    /// Bits per second of the camera's USB link; 0: unknown.
    std::uint64_t usbSpeed = 0;
};

/// Frames that were lost or came incomplete.
std::uint64_t framesBad(const CameraEvidence& camera);

/// Whether the stream brought nothing, not even a damaged frame.
bool isSilent(const CameraEvidence& camera);

/// What is known of an interface and its cameras.
struct InterfaceEvidence {
    /// As the commands of this program take it.
    std::string name;
    std::vector<CameraEvidence> cameras;
    /// How far the counters moved since before the start.
    platform::NetworkCounters network;
    /// Packets that the adapter received and the streams did not, over a time in which both were
    /// counted; of other programs as well. Negative by a few that were on their way.
    std::optional<std::int64_t> surplus;
    /// Largest packet of the adapter in bytes.
    std::optional<std::uint64_t> mtu;
    /// MB that the system allows for USB transfers, and that the cameras need.
    std::optional<std::uint64_t> usbMemory;
    std::uint64_t usbMemoryNeeded = 0;
    bool isSimulated = false;
    /// File of this program, for commands.
    std::filesystem::path program;
};

/// A place where something was lost.
struct LossFinding {
    LossPlace place = LossPlace::Unknown;
    /// ID of the camera; empty: the interface, whose cameras share the place.
    std::string camera;
    /// A sentence with the numbers.
    std::string evidence;
    /// What to do, with the command where there is one; empty: nothing is known.
    std::string cure;
    /// Every packet came when it was requested again: no frame was lost by it.
    bool isRepaired = false;
};

/// Names the places where frames of an interface were lost, cameras in their order, then the
/// interface. A place is named only by a counter that moved; packets that never reached the adapter
/// only by the adapter's own count. Every camera that lost frames, or brought none, has a finding,
/// or its interface has. Its sentences are in the language of the application. Reentrant.
std::vector<LossFinding> findLosses(const InterfaceEvidence& evidence);
