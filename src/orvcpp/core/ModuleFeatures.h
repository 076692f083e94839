// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/FeatureSet.h"

#include <cstdint>
#include <functional>
#include <string>

namespace orv {

/// Features that the modules of every provider have, named as in GenTL SFNC. Texts and numbers are
/// fixed. Each function leaves its last category as the current one.

/// Maker of the transport layers.
constexpr const char* vendorName = "Meridane Technologies";
std::string gigeInterfaceName(const std::string& adapter);
/// The engine reads the controller's PCI place from it.
std::string usbInterfaceName(const std::string& controller);

/// An enumeration of the types of transport layers that we know.
void addType(FeatureSet& set, const std::string& name, OrvTransportLayerType type);
/// A fixed IPv4 address, in host byte order.
FeatureNode& addAddress(FeatureSet& set, const std::string& name, std::uint32_t address);

/// "/InterfaceInformation".
void addInterfaceInformation(FeatureSet& set, const std::string& id, const std::string& name,
                             OrvTransportLayerType type);
/// Address, subnet mask (host byte order) and MAC address of an interface's network adapter.
void addAdapterAddresses(FeatureSet& set, std::uint32_t address, std::uint32_t mask,
                         std::uint64_t mac);
/// \p location: PCI bus, device and function of an interface's USB controller.
void addUsbController(FeatureSet& set, const std::string& location);

struct DeviceInformation {
    std::string id;
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::string userId;
    OrvTransportLayerType type = OrvTransportLayerTypeUnknown;
};
/// "/DeviceInformation".
void addDeviceInformation(FeatureSet& set, const DeviceInformation& device);
/// Address (host byte order) and MAC address of a camera.
void addGigeDeviceInformation(FeatureSet& set, std::uint32_t address, std::uint64_t mac);
/// \p location: USB bus, and the ports down to the camera.
void addUsbDeviceInformation(FeatureSet& set, const std::string& location);

/// "/StreamInformation".
void addStreamInformation(FeatureSet& set, OrvTransportLayerType type);

/// A count that any thread may read.
using Count = std::function<std::int64_t()>;
FeatureNode& addCount(FeatureSet& set, const std::string& name, const std::string& about,
                      Count count);

/// Of a stream's acquisition.
struct FrameCounts {
    Count delivered;
    /// Delivered, but damaged.
    Count incomplete;
    Count lost;
    Count withoutBuffer;
    Count bytes;
};
/// "/Statistics". Names are those of the GenICam standard (GenTL SFNC), where it has the feature.
void addFrameStatistics(FeatureSet& set, const FrameCounts& counts);

} // namespace orv
