// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/ModuleFeatures.h"

#include <limits>
#include <utility>

namespace orv {

namespace {

std::string typeName(OrvTransportLayerType type) {
    if (type == OrvTransportLayerTypeGEV)
        return "GigEVision";
    return type == OrvTransportLayerTypeU3V ? "USB3Vision" : "Custom";
}

void addMac(FeatureSet& set, const std::string& name, const std::string& about, std::uint64_t mac) {
    set.fixedNumber(name, static_cast<std::int64_t>(mac))
        .limits(0, 0xFFFFFFFFFFFF)
        .shownAs("MACAddress")
        .about(about);
}

} // namespace

std::string gigeInterfaceName(const std::string& adapter) {
    return "MRD GigE Interface " + adapter;
}

std::string usbInterfaceName(const std::string& controller) {
    return "MRD USB Interface " + controller;
}

void addType(FeatureSet& set, const std::string& name, OrvTransportLayerType type) {
    set.enumeration(name)
        .entry("GigEVision", OrvTransportLayerTypeGEV)
        .entry("USB3Vision", OrvTransportLayerTypeU3V)
        .entry("Custom", OrvTransportLayerTypeCustom)
        .current(typeName(type))
        .readOnly();
}

FeatureNode& addAddress(FeatureSet& set, const std::string& name, std::uint32_t address) {
    return set.fixedNumber(name, address).limits(0, 0xFFFFFFFF).shownAs("IPV4Address");
}

void addInterfaceInformation(FeatureSet& set, const std::string& id, const std::string& name,
                             OrvTransportLayerType type) {
    set.category("/InterfaceInformation");
    set.fixedText("InterfaceID", id).about("ID of the interface.");
    set.fixedText("InterfaceDisplayName", name).about("Name of the interface.");
    addType(set, "InterfaceType", type);
}

void addAdapterAddresses(FeatureSet& set, std::uint32_t address, std::uint32_t mask,
                         std::uint64_t mac) {
    set.category("/InterfaceInformation/GigEVision");
    addAddress(set, "GevInterfaceSubnetIPAddress", address).about("IPv4 address of the adapter.");
    addAddress(set, "GevInterfaceSubnetMask", mask).about("Subnet mask of the adapter.");
    addMac(set, "GevInterfaceMACAddress", "MAC address of the adapter.", mac);
}

void addUsbController(FeatureSet& set, const std::string& location) {
    set.category("/InterfaceInformation/USB3Vision");
    set.fixedText("U3VControllerLocation", location)
        .about("PCI bus, device and function of the USB controller.");
}

void addDeviceInformation(FeatureSet& set, const DeviceInformation& device) {
    set.category("/DeviceInformation");
    set.fixedText("DeviceID", device.id).about("ID of the camera.");
    set.fixedText("DeviceVendorName", device.vendor);
    set.fixedText("DeviceModelName", device.model);
    set.fixedText("DeviceSerialNumber", device.serialNumber);
    set.fixedText("DeviceUserID", device.userId);
    addType(set, "DeviceType", device.type);
}

void addGigeDeviceInformation(FeatureSet& set, std::uint32_t address, std::uint64_t mac) {
    set.category("/DeviceInformation/GigEVision");
    addAddress(set, "GevDeviceIPAddress", address).about("IPv4 address of the camera.");
    addMac(set, "GevDeviceMACAddress", "MAC address of the camera.", mac);
}

void addUsbDeviceInformation(FeatureSet& set, const std::string& location) {
    set.category("/DeviceInformation/USB3Vision");
    set.fixedText("DeviceLocation", location).about("USB bus, and the ports down to the camera.");
}

void addStreamInformation(FeatureSet& set, OrvTransportLayerType type) {
    set.category("/StreamInformation");
    set.fixedText("StreamID", "Stream0").about("ID of the stream.");
    addType(set, "StreamType", type);
}

FeatureNode& addCount(FeatureSet& set, const std::string& name, const std::string& about,
                      Count count) {
    return set.integer(name)
        .about(about)
        .limits(0, std::numeric_limits<std::int64_t>::max())
        .computed([read = std::move(count)] { return Value(read()); });
}

void addFrameStatistics(FeatureSet& set, const FrameCounts& counts) {
    set.category("/Statistics");
    addCount(set, "StreamDeliveredFrameCount", "Frames that were handed to the receiver.",
             counts.delivered);
    addCount(set, "StreamIncompleteFrameCount", "Frames among them that were damaged.",
             counts.incomplete);
    addCount(set, "StreamLostFrameCount", "Frames that were lost on the way.", counts.lost);
    addCount(set, "StreamUnderrunFrameCount", "Frames for which no buffer was queued.",
             counts.withoutBuffer);
    addCount(set, "StreamDeliveredByteCount", "Bytes that arrived.", counts.bytes);
}

} // namespace orv
