// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/OpenedCamera.h"

#include "orvcpp/aravis/Fault.h"
#include "orvcpp/aravis/GenicamObjects.h"
#include "orvcpp/aravis/ModuleFeatures.h"
#include "orvcpp/aravis/device/NodeAccess.h"

#include <algorithm>
#include <utility>

namespace orv::aravis {

namespace {

/// The packet sizes that every GigE camera must be able to take at least, and that none exceeds.
constexpr std::int64_t smallestPacket = 576;
constexpr std::int64_t largestPacket = 65535;

constexpr const char* packetSizeFeature = "GevSCPSPacketSize";

OrvErrorType readPacketSize(const DeviceSession& device, std::int64_t& size) {
    const auto feature = device.features()->find(packetSizeFeature);
    if (!feature)
        return OrvErrorNotFound;
    const auto found = std::make_shared<std::int64_t>(0);
    const OrvErrorType error =
        device.call([found, feature](ArvDevice*) { return node::get(*feature, *found); });
    if (!error)
        size = *found;
    return error;
}

OrvErrorType writePacketSize(const DeviceSession& device, std::int64_t size) {
    const auto feature = device.features()->find(packetSizeFeature);
    if (!feature)
        return OrvErrorNotFound;
    return device.call([size, feature](ArvDevice*) { return node::set(*feature, size); });
}

OrvErrorType adjustPacketSize(const DeviceSession& device) {
    const auto feature = device.features()->find(packetSizeFeature);
    if (!feature)
        return OrvErrorNotFound;
    return device.call([feature](ArvDevice* of) {
        // The library would write past a lock.
        if (const OrvErrorType error = node::admitsWriting(*feature))
            return error;
        Fault fault;
        arv_gv_device_auto_packet_size(ARV_GV_DEVICE(of), fault.out());
        return fault.code();
    });
}

IntegerLimits readPacketLimits(const DeviceSession& device) {
    const auto limits = std::make_shared<node::Limits<std::int64_t>>();
    const auto feature = device.features()->find(packetSizeFeature);
    const OrvErrorType error =
        !feature ? OrvErrorNotFound : device.call([limits, feature](ArvDevice*) {
            return node::limits(*feature, *limits);
        });
    if (error)
        return {smallestPacket, largestPacket, 1};
    return {std::max(limits->minimum, std::int64_t{0}), std::min(limits->maximum, largestPacket),
            limits->increment};
}

StreamControl streamControl(const std::shared_ptr<DeviceSession>& device,
                            const std::shared_ptr<Streaming>& streaming) {
    StreamControl control;
    control.isStreaming = [streaming] {
        return streaming->isRunning();
    };
    control.path = [streaming] {
        return streaming->path();
    };
    control.count = [streaming](const std::string& name) {
        return streaming->count(name);
    };
    control.packetSize = [device](std::int64_t& size) {
        return readPacketSize(*device, size);
    };
    control.setPacketSize = [device](std::int64_t size) {
        return writePacketSize(*device, size);
    };
    control.packetSizeLimits = [device] {
        return readPacketLimits(*device);
    };
    control.adjustPacketSize = [device] {
        return adjustPacketSize(*device);
    };
    return control;
}

} // namespace

void OpenedCamera::forgetObservers() const {
    features->forgetObservers();
    for (const auto& module : modules)
        module->forgetObservers();
}

std::shared_ptr<OpenedCamera> makeOpenedCamera(const std::shared_ptr<Session>& calls,
                                               std::shared_ptr<DeviceSession> device,
                                               PacketSocket packetSocket, const std::string& id) {
    auto made = std::make_shared<OpenedCamera>();
    const CameraRecord& record = device->record();
    made->streaming = std::make_shared<Streaming>(device, chooseStreamPath(record, packetSocket));
    made->features = std::make_shared<FeatureAccess>(calls, device);
    const auto addModule = [&](FeatureSet features) {
        made->modules.push_back(std::make_shared<FeatureModule>(
            calls, std::make_shared<WhileOpen>(device), std::move(features)));
        return made->modules.back();
    };
    made->localDevice =
        std::make_shared<GenicamLocalDevice>(addModule(makeLocalDeviceFeatures(record, id)));
    made->stream = std::make_shared<GenicamStream>(
        addModule(makeStreamFeatures(record, streamControl(device, made->streaming))), device);
    made->device = std::move(device);
    return made;
}

} // namespace orv::aravis
