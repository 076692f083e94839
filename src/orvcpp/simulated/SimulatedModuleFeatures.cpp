// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/SimulatedModuleFeatures.h"

#include "orvcpp/core/ModuleFeatures.h"

#include <chrono>
#include <limits>
#include <vector>

namespace orv::simulated {

namespace {

/// A selector from 0 to \p count - 1; the texts of one object each below it.
template <typename Texts>
void addListing(FeatureSet& set, const FeatureNode& selector, const std::string& name,
                Texts texts) {
    set.string(name).computed([&selector, texts] {
        std::int64_t index = 0;
        const bool valid = selector.get(index) == OrvErrorSuccess &&
                           index < static_cast<std::int64_t>(texts.size());
        return Value(valid ? texts[static_cast<std::size_t>(index)] : std::string());
    });
}

template <typename List, typename Text>
std::vector<std::string> collect(const List& list, Text text) {
    std::vector<std::string> texts;
    for (const auto* element : list)
        texts.push_back(element->*text);
    return texts;
}

FeatureNode& addSelector(FeatureSet& set, const std::string& name, std::size_t count,
                         std::vector<std::string> selected) {
    const auto last = count > 0 ? static_cast<std::int64_t>(count) - 1 : 0;
    return set.integer(name).limits(0, last).selects(std::move(selected));
}

void addInterfaceInformation(FeatureSet& set, const InterfaceData& data,
                             const TransportLayerData& layer) {
    addInterfaceInformation(set, data.id, data.name, layer.type);
    set.fixedNumber("InterfaceTLVersionMajor", 1).guru();
    set.fixedNumber("InterfaceTLVersionMinor", 4).guru();
    set.fixedNumber("InterfaceLinkSpeed", static_cast<std::int64_t>(data.bitsPerSecond))
        .unit("bps")
        .limits(0, std::numeric_limits<std::int64_t>::max())
        .expert();
}

void addDeviceEnumeration(FeatureSet& set, const Scenario& scenario, std::size_t interface) {
    std::vector<const CameraData*> cameras;
    for (const CameraData& camera : scenario.cameras) {
        if (camera.interface == interface)
            cameras.push_back(&camera);
    }
    set.category("/DeviceEnumeration");
    set.command("DeviceUpdateList").about("Looks for cameras again.");
    const FeatureNode& selector =
        addSelector(set, "DeviceSelector", cameras.size(),
                    {"DeviceID", "DeviceVendorName", "DeviceModelName", "DeviceSerialNumber"});
    addListing(set, selector, "DeviceID", collect(cameras, &CameraData::id));
    addListing(set, selector, "DeviceVendorName", collect(cameras, &CameraData::vendor));
    addListing(set, selector, "DeviceModelName", collect(cameras, &CameraData::model));
    addListing(set, selector, "DeviceSerialNumber", collect(cameras, &CameraData::serialNumber));
}

void addAdapter(FeatureSet& set, const AdapterData& adapter) {
    addAdapterAddresses(set, adapter.address, adapter.mask, adapter.mac);
    set.fixedNumber("GevInterfaceMTU", adapter.mtu).unit("B").expert();
    addAddress(set, "GevInterfaceGateway", 0).expert();
    set.category("/ForceIP");
    set.integer("GevDeviceForceIPAddress").shownAs("IPV4Address").expert();
    set.integer("GevDeviceForceSubnetMask").shownAs("IPV4Address").expert();
    set.integer("GevDeviceForceGateway").shownAs("IPV4Address").expert();
    set.command("GevDeviceForceIP").expert();
}

void addGigEDevice(FeatureSet& set, const CameraData& camera, const InterfaceData& interface,
                   const Scenario& scenario) {
    addGigeDeviceInformation(set, camera.address, camera.mac);
    const std::uint32_t mask = interface.adapter ? scenario.adapters[*interface.adapter].mask : 0;
    addAddress(set, "GevDeviceSubnetMask", mask);
    addAddress(set, "GevDeviceGateway", 0).expert();
    set.category("/DeviceControl/GVCP");
    set.integer("GVCPCmdRetries").limits(1, 10).value(std::int64_t{5}).guru();
    set.integer("GVCPCmdTimeout").unit("ms").limits(100, 5000).value(std::int64_t{250}).guru();
    set.integer("GVCPHBInterval").unit("ms").limits(250, 5000).value(std::int64_t{1450}).guru();
}

void addUsbDevice(FeatureSet& set, const CameraData& camera, const Scenario& scenario) {
    addUsbDeviceInformation(set, deviceLocation(scenario, camera));
    FeatureNode& speed = set.enumeration("U3VDeviceSpeed");
    speed.entry("LowSpeed", 1).entry("FullSpeed", 2).entry("HighSpeed", 4).entry("SuperSpeed", 8);
    speed.current(camera.linkBitsPerSecond > 480'000'000 ? "SuperSpeed" : "HighSpeed").readOnly();
    set.category("/DeviceControl");
    set.integer("U3VCommandTimeout").unit("ms").limits(100, 5000).value(std::int64_t{500}).guru();
    set.integer("U3VCommandRetries").limits(1, 10).value(std::int64_t{3}).guru();
}

void addStatistics(FeatureSet& set, const StreamStatistics& statistics) {
    const auto count = [](const std::atomic<std::int64_t>& value) {
        return [&value] {
            return value.load();
        };
    };
    addFrameStatistics(set, {count(statistics.delivered), count(statistics.incomplete),
                             count(statistics.dropped), count(statistics.underrun),
                             count(statistics.bytes)});
}

void addPacketSize(FeatureSet& set, CameraSettings& settings) {
    const auto idle = [&settings] {
        return !settings.isStreaming;
    };
    set.integer("GVSPPacketSize")
        .unit("B")
        .about("Bytes of a packet of the stream.")
        .bind(settings.packetSize)
        .limits(576, settings.data().maximumPacketSize)
        .writableIf(idle);
    set.command("GVSPAdjustPacketSize")
        .about("Finds the largest packet size that reaches the host.")
        .writableIf(idle)
        .action([&settings] { settings.packetSize = settings.data().maximumPacketSize; },
                std::chrono::milliseconds(settings.data().adjustMilliseconds));
}

void addGvsp(FeatureSet& set, CameraSettings& settings) {
    const CameraData& data = settings.data();
    set.category("/GVSP");
    set.enumeration("GVSPDriver")
        .about("Driver that receives the stream.")
        .entry("Socket", 0)
        .entry("Filter", 1)
        .current(data.streamDriver)
        .readOnly();
    if (!data.streamProtocol.empty())
        set.enumeration("GVSPProtocol")
            .entry("UDP", 0)
            .entry("TCP", 1)
            .current(data.streamProtocol)
            .readOnly();
    addPacketSize(set, settings);
    set.integer("GVSPBurstSize").limits(1, 1024).value(std::int64_t{32}).guru();
    set.integer("GVSPTimeout").unit("ms").limits(10, 1000).value(std::int64_t{70}).expert();
    set.integer("GVSPMaxLookBack").limits(0, 1024).value(std::int64_t{30}).guru();
    set.integer("GVSPMaxRequests").limits(0, 1024).value(std::int64_t{3}).guru();
    set.integer("GVSPMissingSize").limits(0, 8192).value(std::int64_t{512}).guru();
    set.integer("GVSPHostReceiveBufferSize")
        .unit("KB")
        .limits(64, 65536, 64)
        .value(std::int64_t{2048})
        .guru();
}

void addBufferHandling(FeatureSet& set, const CameraSettings& settings) {
    set.category("/BufferHandlingControl");
    set.enumeration("StreamBufferHandlingMode")
        .entry("OldestFirst", 0)
        .entry("NewestOnly", 1, false)
        .expert();
    set.fixedNumber("StreamAnnounceBufferMinimum", 1).expert();
    set.boolean("StreamIsGrabbing")
        .computed([&settings] { return Value(settings.isStreaming); })
        .expert();
}

/// Hubs from the camera's own up to the one on the controller.
std::vector<const HubData*> hubsAbove(const ControllerData& controller, const CameraData& camera) {
    std::vector<const HubData*> hubs;
    for (auto hub = camera.hub; hub; hub = controller.hubs[*hub].parent)
        hubs.push_back(&controller.hubs[*hub]);
    return hubs;
}

} // namespace

std::string deviceLocation(const Scenario& scenario, const CameraData& camera) {
    const InterfaceData& interface = scenario.interfaces[camera.interface];
    if (!interface.controller)
        return {};
    const ControllerData& controller = scenario.controllers[*interface.controller];
    std::string ports = '/' + std::to_string(camera.port);
    for (const HubData* hub : hubsAbove(controller, camera))
        ports.insert(0, '/' + std::to_string(hub->port));
    return "::" + std::to_string(*interface.controller + 1) + ports;
}

FeatureSet makeTransportLayerFeatures(const Scenario& scenario, std::size_t layer) {
    const TransportLayerData& data = scenario.transportLayers[layer];
    FeatureSet set;
    set.category("/SystemInformation");
    set.fixedText("TLID", data.id).about("ID of the transport layer.");
    set.fixedText("TLVendorName", data.vendor).about("Maker of the transport layer.");
    set.fixedText("TLModelName", data.model);
    set.fixedText("TLDisplayName", data.name);
    set.fixedText("TLVersion", data.version);
    set.fixedText("TLPath", data.path).maximumLength(1024).expert();
    set.fixedText("TLFileName", data.path.substr(data.path.find_last_of('/') + 1)).expert();
    addType(set, "TLType", data.type);
    set.fixedNumber("GenTLVersionMajor", 1).guru();
    set.fixedNumber("GenTLVersionMinor", 5).guru();
    set.fixedNumber("GenTLSFNCVersionMajor", 1).guru();
    set.fixedNumber("GenTLSFNCVersionMinor", 1).guru();
    std::vector<const InterfaceData*> interfaces;
    for (const InterfaceData& interface : scenario.interfaces) {
        if (interface.transportLayer == layer)
            interfaces.push_back(&interface);
    }
    set.category("/InterfaceEnumeration");
    set.command("InterfaceUpdateList").about("Looks for interfaces again.");
    const FeatureNode& selector = addSelector(set, "InterfaceSelector", interfaces.size(),
                                              {"InterfaceID", "InterfaceDisplayName"});
    addListing(set, selector, "InterfaceID", collect(interfaces, &InterfaceData::id));
    addListing(set, selector, "InterfaceDisplayName", collect(interfaces, &InterfaceData::name));
    return set;
}

FeatureSet makeInterfaceFeatures(const Scenario& scenario, std::size_t interface) {
    const InterfaceData& data = scenario.interfaces[interface];
    FeatureSet set;
    addInterfaceInformation(set, data, scenario.transportLayers[data.transportLayer]);
    if (data.adapter)
        addAdapter(set, scenario.adapters[*data.adapter]);
    if (data.controller)
        addUsbController(set, scenario.controllers[*data.controller].location());
    addDeviceEnumeration(set, scenario, interface);
    return set;
}

FeatureSet makeLocalDeviceFeatures(const Scenario& scenario, const CameraSettings& settings) {
    const CameraData& camera = settings.data();
    const InterfaceData& interface = scenario.interfaces[camera.interface];
    FeatureSet set;
    addDeviceInformation(set, {camera.id, camera.vendor, camera.model, camera.serialNumber,
                               camera.name, scenario.layerOf(camera).type});
    set.fixedText("DeviceDisplayName", camera.model + " (" + camera.id + ")");
    set.enumeration("DeviceEndianessMechanism").entry("Legacy", 0).entry("Standard", 1).guru();
    set.category("/StreamEnumeration");
    set.integer("StreamSelector").limits(0, 0).selects({"StreamID"}).expert();
    set.fixedText("StreamID", "Stream0").expert();
    if (interface.controller)
        addUsbDevice(set, camera, scenario);
    else
        addGigEDevice(set, camera, interface, scenario);
    return set;
}

FeatureSet makeStreamFeatures(CameraSettings& settings, const StreamStatistics& statistics,
                              bool isUsb) {
    FeatureSet set;
    addStreamInformation(set, isUsb ? OrvTransportLayerTypeU3V : OrvTransportLayerTypeGEV);
    addBufferHandling(set, settings);
    if (isUsb) {
        set.category("/USB3Vision");
        set.integer("MaxTransferSize")
            .unit("B")
            .limits(65536, 1048576, 1024)
            .value(std::int64_t{262144})
            .guru();
        set.integer("MaxTransferCount").limits(1, 256).value(std::int64_t{31}).guru();
    } else {
        addGvsp(set, settings);
    }
    addStatistics(set, statistics);
    return set;
}

} // namespace orv::simulated
