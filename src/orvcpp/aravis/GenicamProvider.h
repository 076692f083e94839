// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/stream/StreamTransport.h"
#include "orvcpp/core/CallCounter.h"
#include "orvcpp/core/Provider.h"

#include <filesystem>
#include <memory>

namespace orv::aravis {

/// Settings for real cameras in a configuration file.
struct GenicamSettings {
    PacketSocket packetSocket = PacketSocket::Automatic;
    /// Where the kernel shows its USB devices.
    std::filesystem::path sysfs = "/sys";
};

/// GigE Vision and USB3 Vision cameras that describe themselves by GenICam. \p host must outlive
/// it. start() takes a second, until the cameras have answered.
std::shared_ptr<Provider> makeGenicamProvider(const GenicamSettings& settings, ProviderHost& host,
                                              const std::shared_ptr<CallCounter>& callCounter);

} // namespace orv::aravis
