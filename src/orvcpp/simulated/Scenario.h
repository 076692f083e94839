// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/MemoryTransportLayer.h"

#include "OrvCPP/OrvTypes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orv::simulated {

/// A network adapter of the simulated host.
struct AdapterData {
    std::string name;
    /// Host byte order.
    std::uint32_t address = 0;
    std::uint32_t mask = 0;
    std::uint64_t mac = 0;
    std::int64_t mtu = 0;
    std::uint64_t bitsPerSecond = 0;
    /// What the link really carries.
    std::uint64_t carriedBitsPerSecond = 0;
};

/// An external USB hub.
struct HubData {
    std::string name;
    /// Index among the controller's hubs; empty for the root hub.
    std::optional<std::size_t> parent;
    /// Port of the parent hub.
    std::uint32_t port = 0;
    std::uint64_t bitsPerSecond = 0;
};

/// A USB host controller and the hubs behind it.
struct ControllerData {
    std::uint32_t bus = 0;
    std::uint32_t device = 0;
    std::uint32_t function = 0;
    std::uint64_t bitsPerSecond = 0;
    /// What the controller really carries.
    std::uint64_t carriedBitsPerSecond = 0;
    std::vector<HubData> hubs;

    /// PCI location, for example "0-20-0".
    std::string location() const {
        return std::to_string(bus) + '-' + std::to_string(device) + '-' + std::to_string(function);
    }
};

/// An interface belongs to an adapter or a controller, or has a link of its own.
struct InterfaceData {
    std::string id;
    std::string name;
    std::size_t transportLayer = 0;
    std::optional<std::size_t> adapter;
    std::optional<std::size_t> controller;
    std::uint64_t bitsPerSecond = 0;
    /// What the link really carries.
    std::uint64_t carriedBitsPerSecond = 0;
};

enum class BandwidthFeature { DeviceLinkThroughputLimit, StreamBytesPerSecond, None };
enum class FrameRateFeature { AcquisitionFrameRateLimit, AcquisitionFrameRate, None };
/// What the camera grants to an Open of this process.
enum class Access { Full, Read, None };

/// Numbers of the entries of enumerations that a scenario sets.
enum TriggerSourceEntry : std::int64_t {
    TriggerSourceFreerun = 0,
    TriggerSourceSoftware = 1,
    TriggerSourceLine0 = 2,
    TriggerSourceLine1 = 3
};
enum ExposureModeEntry : std::int64_t { ExposureModeTimed = 1, ExposureModeTriggerWidth = 2 };

/// A feature that answers an error.
struct FeatureFault {
    std::string module;
    std::string name;
    OrvErrorType code = OrvErrorSuccess;
    bool onGet = false;
    bool onSet = false;
    /// Place in the scenario, for messages.
    std::string origin;
};

/// A command that never completes.
struct CommandFault {
    std::string name;
    std::string origin;
};

struct FaultData {
    /// Share of the frames, 0 to 1.
    double lossRate = 0;
    double incompleteRate = 0;
    /// Of each acquisition; the camera sends nothing after them.
    std::optional<std::int64_t> stopAfterFrames;
    std::vector<FeatureFault> features;
    std::vector<CommandFault> stuckCommands;
    std::optional<double> vanishAfterSeconds;
    /// What Open answers, when not success.
    OrvErrorType openError = OrvErrorSuccess;
};

struct CameraData {
    std::string id;
    std::string name;
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::size_t interface = 0;

    /// USB: index among the controller's hubs (empty: the root hub) and port on it.
    std::optional<std::size_t> hub;
    std::uint32_t port = 0;
    /// GigE: host byte order.
    std::uint32_t address = 0;
    std::uint64_t mac = 0;

    std::int64_t sensorWidth = 0;
    std::int64_t sensorHeight = 0;
    /// Frames per second.
    double sensorFrameRate = 0;
    OrvPixelFormatType pixelFormat = OrvPixelFormatMono8;
    std::vector<OrvPixelFormatType> pixelFormats;

    /// Microseconds.
    double exposureTime = 0;
    std::int64_t exposureMode = ExposureModeTimed;

    BandwidthFeature bandwidthFeature = BandwidthFeature::DeviceLinkThroughputLimit;
    /// Bytes per second.
    std::int64_t bandwidthMinimum = 0;
    std::int64_t bandwidthMaximum = 0;
    std::int64_t bandwidthIncrement = 1;
    std::int64_t bandwidth = 0;

    FrameRateFeature frameRateFeature = FrameRateFeature::AcquisitionFrameRate;
    bool frameRateEnabled = false;
    double frameRate = 0;

    bool triggerMode = false;
    std::int64_t triggerSource = TriggerSourceSoftware;
    /// Triggers per second that come from outside; 0: none.
    double triggerRate = 0;

    std::string streamDriver;
    /// Empty: the stream has no such feature.
    std::string streamProtocol;
    std::int64_t packetSize = 0;
    std::int64_t maximumPacketSize = 0;
    std::int64_t adjustMilliseconds = 0;

    /// Features beyond those of every camera.
    std::int64_t extraFeatures = 0;

    std::uint64_t linkBitsPerSecond = 0;
    Access access = Access::Full;
    /// Bytes per second that the camera sends to the application that uses it.
    std::int64_t otherTraffic = 0;
    /// Damaged share of the frames that arrive over an overloaded link, as a fraction of the lost
    /// share.
    double overloadDamage = 0;
    FaultData faults;
    std::uint32_t seed = 0;
};

/// One host with its transport layers, interfaces and cameras, as a scenario file describes it.
struct Scenario {
    std::int64_t callDelayMicroseconds = 0;
    std::vector<AdapterData> adapters;
    std::vector<ControllerData> controllers;
    std::vector<TransportLayerData> transportLayers;
    std::vector<InterfaceData> interfaces;
    std::vector<CameraData> cameras;

    const TransportLayerData& layerOf(const CameraData& camera) const {
        return transportLayers[interfaces[camera.interface].transportLayer];
    }
};

} // namespace orv::simulated
