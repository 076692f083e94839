// SPDX-License-Identifier: BSD-3-Clause
#include "engine/CameraNumbers.h"

#include "engine/CameraHandler.h"
#include "features/FeatureController.h"
#include "platform/NetworkCounters.h"

std::optional<FeatureValue> readIfPresent(const CameraHandler& camera, const char* module,
                                          const char* feature) {
    const auto features = camera.getFeatureController();
    if (!features->getModule(module) || !features->hasFeature(module, feature))
        return std::nullopt;
    return features->readFeatureValue(module, feature);
}

std::optional<std::uint64_t> readCount(const CameraHandler& camera, const char* module,
                                       const char* feature) {
    const auto value = readIfPresent(camera, module, feature);
    const auto number = value ? integerOf(*value) : std::nullopt;
    return number && *number >= 0 ? std::optional(static_cast<std::uint64_t>(*number))
                                  : std::nullopt;
}

std::string adapterOf(const CameraList& cameras) {
    for (const auto& camera : cameras)
        if (const auto address = readCount(*camera, interfaceModule, "GevInterfaceSubnetIPAddress"))
            return platform::adapterWithAddress(static_cast<std::uint32_t>(*address));
    return {};
}
