// SPDX-License-Identifier: BSD-3-Clause
#include "losses/CameraAdapter.h"

#include "features/FeatureController.h"
#include "features/OptionalFeatures.h"
#include "platform/NetworkCounters.h"

std::string adapterOf(const FeatureController& features) {
    const auto address = readCount(features, interfaceModule, "GevInterfaceSubnetIPAddress");
    return address ? platform::adapterWithAddress(static_cast<std::uint32_t>(*address))
                   : std::string();
}
