// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "platform/NetworkAdapters.h"
#include "platform/UsbDevice.h"

#include "OrvCPP/OrvTypes.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orv::aravis {

/// What is known of a camera before it is opened; independent of the library's objects.
struct CameraRecord {
    /// OrvTransportLayerTypeGEV or OrvTransportLayerTypeU3V.
    OrvTransportLayerType type = OrvTransportLayerTypeUnknown;
    /// MAC address, or GUID of a USB camera; the serial number of one that has neither.
    std::string hardwareId;
    std::string vendor;
    std::string model;
    std::string serialNumber;
    /// Name that the user gave the camera; empty when it is not known.
    std::string userName;
    /// IPv4 address in host byte order; 0 for USB.
    std::uint32_t address = 0;
    /// IPv4 address as a text, or the place on the USB bus.
    std::string place;
    std::optional<platform::NetworkAdapter> adapter;
    std::optional<platform::UsbDevice> usb;

    /// Unique, also for two cameras of one serial number.
    std::string key() const;
    /// Whether two records are of one device, also at different addresses or ports. False without a
    /// unique hardware address.
    bool isSameDevice(const CameraRecord& other) const;
    /// ID to show and to type.
    std::string id() const;
    /// ID of the interface through which the camera is reached.
    std::string interfaceId() const;
};

} // namespace orv::aravis
