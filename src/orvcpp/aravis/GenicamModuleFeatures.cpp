// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/GenicamModuleFeatures.h"

#include "orvcpp/core/ModuleFeatures.h"

#include <limits>
#include <memory>
#include <utility>

namespace orv::aravis {

namespace {

constexpr std::int64_t anyNumber = std::numeric_limits<std::int64_t>::max();
constexpr int kilobyte = 1024;
constexpr std::int64_t socketDriver = 0;
constexpr std::int64_t filterDriver = 1;

FeatureNode& addQuantity(FeatureSet& set, const char* name, std::int64_t value, const char* unit) {
    return set.fixedNumber(name, value).limits(0, anyNumber).unit(unit);
}

void addAdapter(FeatureSet& set, const platform::NetworkAdapter& adapter) {
    addAdapterAddresses(set, adapter.address, adapter.mask, platform::macAddress(adapter.name));
    set.integer("GevInterfaceMTU")
        .about("Largest packet that the adapter sends and receives whole.")
        .unit("B")
        .shownAs("PureNumber")
        .limits(0, anyNumber)
        .computed([name = adapter.name] { return Value(platform::mtu(name)); });
}

Count counting(const StreamControl& control, std::uint64_t gvsp::StreamCounts::*count) {
    return [counts = control.counts, count] {
        return static_cast<std::int64_t>(counts().*count);
    };
}

void addStatistics(FeatureSet& set, const StreamControl& control) {
    const auto delivered = [counts = control.counts] {
        const gvsp::StreamCounts now = counts();
        return static_cast<std::int64_t>(now.framesComplete + now.framesIncomplete);
    };
    addFrameStatistics(set, {delivered, counting(control, &gvsp::StreamCounts::framesIncomplete),
                             counting(control, &gvsp::StreamCounts::framesLost),
                             counting(control, &gvsp::StreamCounts::framesWithoutBuffer),
                             counting(control, &gvsp::StreamCounts::bytes)});
}

void addPacketStatistics(FeatureSet& set, const StreamControl& control) {
    const auto add = [&](const char* name, const char* about,
                         std::uint64_t gvsp::StreamCounts::*count) {
        addCount(set, name, about, counting(control, count));
    };
    add("GevStreamSeenPacketCount", "Packets that arrived.", &gvsp::StreamCounts::packets);
    add("GevStreamLostPacketCount", "Packets that never arrived, of frames of which others did.",
        &gvsp::StreamCounts::packetsMissing);
    add("GevStreamRequestedPacketCount", "Packets that the camera was asked for again.",
        &gvsp::StreamCounts::packetsRequested);
    add("GevStreamResendPacketCount", "Packets that the camera has sent again.",
        &gvsp::StreamCounts::packetsResent);
    add("GevStreamDuplicatePacketCount", "Packets that arrived twice.",
        &gvsp::StreamCounts::packetsDuplicate);
    add("GevStreamLatePacketCount", "Packets that arrived after their frame had been delivered.",
        &gvsp::StreamCounts::packetsLate);
    add("GevStreamRefusedPacketCount", "Packets that were malformed or of no frame of the stream.",
        &gvsp::StreamCounts::packetsRefused);
    add("GevStreamUnavailablePacketCount",
        "Packets that the camera was asked for and no longer had.",
        &gvsp::StreamCounts::packetsUnavailable);
    add("GevStreamDroppedPacketCount",
        "Packets for which this host had no room: in the packet ring, of all streams of the "
        "adapter, or in the UDP socket.",
        &gvsp::StreamCounts::packetsDropped);
    add("GevStreamRingFreezeCount", "How often the packet ring of the adapter was full.",
        &gvsp::StreamCounts::ringFreezes);
    add("StreamHollowFrameCount",
        "Frames of which leader and trailer arrived, and no full packet of data: the path does not "
        "carry packets of this size.",
        &gvsp::StreamCounts::framesHollow);
    add("StreamLostFrameGapCount", "How often one or more frames in a row were lost.",
        &gvsp::StreamCounts::gaps);
}

void addPacketSize(FeatureSet& set, const StreamControl& control) {
    const auto idle = [isStreaming = control.isStreaming] {
        return !isStreaming();
    };
    set.integer("GVSPPacketSize")
        .unit("B")
        .about("Bytes of a packet of the stream.")
        .limits(control.packetSizeLimits)
        .writtenBy([put = control.setPacketSize](const Value& size) {
            return put(std::get<std::int64_t>(size));
        })
        .readBy(
            [get = control.packetSize](Value& size) { return get(size.emplace<std::int64_t>()); })
        .writableIf(idle);
    set.command("GVSPAdjustPacketSize")
        .about("Finds the largest packet size that reaches this host.")
        .runBy(control.adjustPacketSize)
        .writableIf(idle);
}

void addHeadersOnly(FeatureSet& set, const StreamControl& control) {
    set.boolean("GVSPHeadersOnly")
        .about("Frames are counted, and have no images: only the headers of packets are received.")
        .writtenBy([put = control.setHeadersOnly](const Value& value) -> OrvErrorType {
            put(std::get<bool>(value));
            return OrvErrorSuccess;
        })
        .readBy([get = control.headersOnly](Value& value) -> OrvErrorType {
            value = get();
            return OrvErrorSuccess;
        })
        .writableIf([isStreaming = control.isStreaming] { return !isStreaming(); })
        .expert();
}

void addGvsp(FeatureSet& set, const StreamControl& control) {
    set.category("/GVSP");
    set.enumeration("GVSPDriver")
        .about("Filter: packets are taken from a packet ring, before the operating system's UDP. "
               "Socket: from a UDP socket.")
        .entry("Socket", socketDriver)
        .entry("Filter", filterDriver)
        .computed([transport = control.transport] {
            return Value(transport().usesPacketSocket ? filterDriver : socketDriver);
        });
    addPacketSize(set, control);
    addHeadersOnly(set, control);
    addQuantity(set, "GVSPHostReceiveBufferSize", control.transport().receiveBuffer / kilobyte,
                "KB")
        .about("Receive buffer that the operating system grants a UDP socket.")
        .guru();
}

} // namespace

FeatureSet makeTransportLayerFeatures(const TransportLayerData& layer) {
    FeatureSet set;
    set.category("/SystemInformation");
    set.fixedText("TLID", layer.id).about("ID of the transport layer.");
    set.fixedText("TLDisplayName", layer.name);
    addType(set, "TLType", layer.type);
    return set;
}

FeatureSet makeInterfaceFeatures(const CameraRecord& camera, const std::string& name) {
    FeatureSet set;
    addInterfaceInformation(set, camera.interfaceId(), name, camera.type);
    if (camera.adapter) {
        set.integer("InterfaceLinkSpeed")
            .about("Speed of the adapter's link; 0 when the adapter does not tell.")
            .unit("bps")
            .shownAs("PureNumber")
            .limits(0, anyNumber)
            .computed([name = camera.adapter->name] { return Value(platform::linkSpeed(name)); });
        addAdapter(set, *camera.adapter);
    }
    if (camera.usb)
        addUsbController(set, camera.usb->controller);
    return set;
}

FeatureSet makeLocalDeviceFeatures(const CameraRecord& camera, const std::string& id) {
    FeatureSet set;
    addDeviceInformation(
        set, {id, camera.vendor, camera.model, camera.serialNumber, camera.userName, camera.type});
    if (camera.type == OrvTransportLayerTypeGEV)
        addGigeDeviceInformation(set, camera.address, platform::macNumber(camera.hardwareId));
    if (camera.usb) {
        addUsbDeviceInformation(set, camera.usb->location());
        addQuantity(set, "DeviceConnectionSpeed", camera.usb->linkSpeed, "bps")
            .about("Speed of the camera's USB link.");
    }
    return set;
}

FeatureSet makeStreamFeatures(const CameraRecord& camera, StreamControl control) {
    FeatureSet set;
    addStreamInformation(set, camera.type);
    set.boolean("StreamIsGrabbing")
        .computed([isStreaming = control.isStreaming] { return Value(isStreaming()); })
        .expert();
    if (camera.type == OrvTransportLayerTypeGEV)
        addGvsp(set, control);
    addStatistics(set, control);
    if (camera.type == OrvTransportLayerTypeGEV)
        addPacketStatistics(set, control);
    return set;
}

} // namespace orv::aravis
