// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/device/OpenedCamera.h"

#include "orvcpp/aravis/GenicamModuleFeatures.h"
#include "orvcpp/aravis/LibraryError.h"
#include "orvcpp/aravis/device/DelayLimitFeatures.h"
#include "orvcpp/aravis/device/NodeAccess.h"
#include "orvcpp/core/MemoryLocalDevice.h"
#include "orvcpp/core/MemoryStream.h"

#include <algorithm>
#include <utility>

namespace orv::aravis {

namespace {

/// Bytes of the largest packet possible.
constexpr std::int64_t largestPacket = 65535;

constexpr const char* packetSizeFeature = "GevSCPSPacketSize";

/// Least alignment of a frame's memory, in bytes.
constexpr std::uint32_t bufferAlignment = 16;

/// Admits calls to features in this host's memory while the camera is open.
class OpenedDevice final : public Device {
public:
    explicit OpenedDevice(std::shared_ptr<DeviceConnection> device) : m_device(std::move(device)) {}
    OrvErrorType admits(bool writing) const override { return m_device->admits(writing); }

private:
    const std::shared_ptr<DeviceConnection> m_device;
};

OrvErrorType readPacketSize(const DeviceConnection& device, std::int64_t& size) {
    const auto feature = device.features()->find(packetSizeFeature);
    if (!feature)
        return OrvErrorNotFound;
    const auto found = std::make_shared<std::int64_t>(0);
    const OrvErrorType error =
        device.call([found, feature](ArvDevice*) { return node::get(*feature, *found); });
    if (error == OrvErrorSuccess)
        size = *found;
    return error;
}

/// Keeps a limit that is made of the packet delay. On the device's thread.
OrvErrorType followed(const std::shared_ptr<DelayLimit>& limit, OrvErrorType result) {
    return limit && result == OrvErrorSuccess ? limit->followPacketSize() : result;
}

OrvErrorType writePacketSize(const DeviceConnection& device, std::int64_t size) {
    const auto feature = device.features()->find(packetSizeFeature);
    if (!feature)
        return OrvErrorNotFound;
    return device.call([size, feature, limit = device.delayLimit()](ArvDevice*) {
        return followed(limit, node::set(*feature, size));
    });
}

OrvErrorType adjustPacketSize(const DeviceConnection& device) {
    const auto feature = device.features()->find(packetSizeFeature);
    if (!feature)
        return OrvErrorNotFound;
    return device.call([feature, limit = device.delayLimit()](ArvDevice* of) {
        // The library would ignore the lock.
        if (const OrvErrorType error = node::admitsWriting(*feature); error != OrvErrorSuccess)
            return error;
        LibraryError failure;
        arv_gv_device_auto_packet_size(ARV_GV_DEVICE(of), failure.out());
        return followed(limit, failure.code());
    });
}

IntegerLimits readPacketLimits(const DeviceConnection& device) {
    const auto limits = std::make_shared<node::Limits<std::int64_t>>();
    const auto feature = device.features()->find(packetSizeFeature);
    const OrvErrorType error =
        !feature ? OrvErrorNotFound : device.call([limits, feature](ArvDevice*) {
            return node::limits(*feature, *limits);
        });
    if (error != OrvErrorSuccess)
        return {static_cast<std::int64_t>(gvsp::smallestPacketSize), largestPacket, 1};
    return {std::max(limits->minimum, std::int64_t{0}), std::min(limits->maximum, largestPacket),
            limits->increment};
}

StreamControl streamControl(const std::shared_ptr<DeviceConnection>& device,
                            const std::shared_ptr<AcquisitionSlot>& acquisitions) {
    StreamControl control;
    control.isStreaming = [acquisitions] {
        return acquisitions->isRunning();
    };
    control.transport = [acquisitions] {
        return acquisitions->transport();
    };
    control.counts = [acquisitions] {
        return acquisitions->counts();
    };
    control.headersOnly = [acquisitions] {
        return acquisitions->headersOnly();
    };
    control.setHeadersOnly = [acquisitions](bool headersOnly) {
        acquisitions->setHeadersOnly(headersOnly);
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

std::shared_ptr<OpenedCamera> makeOpenedCamera(const std::shared_ptr<ProviderCalls>& calls,
                                               std::shared_ptr<DeviceConnection> device,
                                               std::shared_ptr<AdapterReceivers> receivers,
                                               PacketSocket packetSocket, const std::string& id) {
    auto made = std::make_shared<OpenedCamera>();
    const CameraRecord& record = device->record();
    made->acquisitions = std::make_shared<AcquisitionSlot>(
        device, chooseStreamTransport(record, packetSocket), std::move(receivers));
    made->features = std::make_shared<FeatureAccess>(calls, device);
    const auto addModule = [&](FeatureSet features) {
        made->modules.push_back(std::make_shared<FeatureModule>(
            calls, std::make_shared<OpenedDevice>(device), std::move(features)));
        return made->modules.back();
    };
    if (device->delayLimit())
        made->features->add(addModule(makeDelayLimitFeatures(device)));
    made->localDevice =
        std::make_shared<MemoryLocalDevice>(addModule(makeLocalDeviceFeatures(record, id)));
    made->stream = std::make_shared<MemoryStream>(
        addModule(makeStreamFeatures(record, streamControl(device, made->acquisitions))),
        bufferAlignment, &queueFrame);
    made->device = std::move(device);
    return made;
}

} // namespace orv::aravis
