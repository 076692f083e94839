// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/FeatureSet.h"

#include <memory>

namespace orv::aravis {

class DeviceConnection;

/// The features of a camera whose limit is made of its packet delay (DeviceConnection::delayLimit),
/// under the names that SFNC gives a camera's own, and AcquisitionFrameRateLimit. A tool that
/// stores a camera's features stores the packet delay, so that these are not streamable. Reading
/// and writing runs on the device's thread.
FeatureSet makeDelayLimitFeatures(const std::shared_ptr<DeviceConnection>& device);

} // namespace orv::aravis
