// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvExport.h"
#include "OrvCPP/OrvTypes.h"

#include <cstdint>
#include <string>
#include <vector>

namespace OrvCPP {

/// One IPv4 address of a simulated network adapter.
struct SimulatedAdapter {
    std::uint32_t index = 0;
    /// Host byte order: 192.168.1.10 is 0xC0A8010A.
    std::uint32_t address = 0;
    std::uint32_t mask = 0;
    std::uint64_t bitsPerSecond = 0;
    std::string alias;
};

/// One node of a simulated host's USB tree: a host controller on the PCI bus, a hub, or a device.
struct SimulatedUsbNode {
    enum class Kind { Controller, Hub, Device };

    Kind kind = Kind::Device;
    /// Device instance ID, for example "PCI\\VEN_8086&DEV_A36D\\3&11583659&0&A0".
    std::string instanceId;
    /// Device interface path; empty for a controller.
    std::string path;
    /// Position of the parent in the list, -1 for a controller.
    int parent = -1;
    /// PCI bus number; controllers only.
    std::uint32_t busNumber = 0;
    /// PCI device number in the high, function number in the low 16 bits; controllers only.
    std::uint32_t pciAddress = 0;
    /// Port on the parent hub, from 1; hubs (but for root hubs) and devices.
    std::uint32_t port = 0;
    /// Bits per second at which the port runs.
    std::uint64_t bitsPerSecond = 0;
};

/// What a camera of a simulated host sends to another application.
struct SimulatedTraffic {
    std::string cameraId;
    std::uint64_t bytesPerSecond = 0;
};

/// The adapters and the USB tree of a simulated host, and what others do on it.
struct SimulatedHost {
    std::vector<SimulatedAdapter> adapters;
    std::vector<SimulatedUsbNode> usbNodes;
    /// Cameras in use elsewhere that send.
    std::vector<SimulatedTraffic> otherTraffic;
};

/// Offered by a system object that simulates cameras (found by dynamic_cast of the OrvSystem):
/// their host, and control of the SDK's calls for tests and measurements. Thread-safe.
class ORVCPP_API ISimulation {
public:
    virtual ~ISimulation() = default;

    /// The host of the scenario that is running; empty while none is.
    virtual SimulatedHost GetHost() const = 0;

    /// Calls into simulated objects since the last ResetCalls. A text or list asked for twice
    /// counts twice; calls of the frame callback and its queries do not count.
    virtual std::uint64_t GetCallCount() const = 0;
    virtual void ResetCalls() = 0;
    /// Makes the call with this number (from 1, counted from the last ResetCalls) answer \p code
    /// without doing anything; 0 switches that off.
    virtual void FailCall(std::uint64_t number, OrvErrorType code) = 0;

    /// Unplugs or plugs a camera by its ID; false when there is none of that ID.
    virtual bool SetCameraPlugged(const std::string& id, bool plugged) = 0;
};

} // namespace OrvCPP
