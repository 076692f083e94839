// SPDX-License-Identifier: BSD-3-Clause
#include "features/OptionalFeatures.h"

#include "features/FeatureController.h"

std::optional<FeatureValue> readIfPresent(const FeatureController& features, const char* module,
                                          const char* feature) {
    if (!features.getModule(module) || !features.hasFeature(module, feature))
        return std::nullopt;
    return features.readFeatureValue(module, feature);
}

std::optional<std::uint64_t> readCount(const FeatureController& features, const char* module,
                                       const char* feature) {
    const auto value = readIfPresent(features, module, feature);
    const auto number = value ? integerOf(*value) : std::nullopt;
    return number && *number >= 0 ? std::optional(static_cast<std::uint64_t>(*number))
                                  : std::nullopt;
}
