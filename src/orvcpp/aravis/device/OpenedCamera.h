// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/device/FeatureAccess.h"
#include "orvcpp/aravis/stream/AcquisitionSlot.h"
#include "orvcpp/core/FeatureModule.h"

#include "OrvCPP/LocalDevice.h"
#include "OrvCPP/Stream.h"

#include <memory>
#include <string>
#include <vector>

namespace orv::aravis {

/// The objects of a camera while it is open.
struct OpenedCamera {
    std::shared_ptr<DeviceConnection> device;
    std::shared_ptr<AcquisitionSlot> acquisitions;
    std::shared_ptr<FeatureAccess> features;
    std::shared_ptr<OrvCPP::LocalDevice> localDevice;
    std::shared_ptr<OrvCPP::Stream> stream;
    /// The features of the local device and of the stream.
    std::vector<std::shared_ptr<FeatureModule>> modules;

    /// To be called without a lock when the camera is closed.
    void forgetObservers() const;
};

/// Makes the objects for an opened device.
std::shared_ptr<OpenedCamera> makeOpenedCamera(const std::shared_ptr<ProviderCalls>& calls,
                                               std::shared_ptr<DeviceConnection> device,
                                               std::shared_ptr<AdapterReceivers> receivers,
                                               PacketSocket packetSocket, const std::string& id);

} // namespace orv::aravis
