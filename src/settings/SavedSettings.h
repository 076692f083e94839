// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"
#include "features/FeatureValue.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace settings {

/// Selectors and the values that they have, the outermost first.
using Selection = std::vector<std::pair<std::string, FeatureValue>>;

/// The value of a feature in the module "Camera". That of a register feature is a text of its bytes
/// in hexadecimal.
struct SavedFeature {
    std::string name;
    /// Integer, float, enumeration, string, boolean or raw.
    OrvFeatureDataType type = OrvFeatureDataUnknown;
    /// Empty for a feature that no other one selects.
    Selection selection;
    FeatureValue value;
};

/// A camera and its settings.
struct SavedCamera {
    std::string id;
    /// Name that the user gave the camera; empty where it has none.
    std::string name;
    std::string model;
    std::string serialNumber;
    std::vector<SavedFeature> features;
};

/// What a camera may send over its interface.
struct SavedShare {
    std::string cameraId;
    /// Nothing for a camera without a limit.
    std::optional<std::int64_t> limitBytesPerSecond;
};

/// How the bandwidth of an interface is divided.
struct SavedDivision {
    std::string interfaceName;
    std::string interfaceId;
    /// 0 when unknown.
    std::int64_t bitsPerSecond = 0;
    std::vector<SavedShare> shares;
};

/// The contents of a settings file.
struct SavedSettings {
    /// ISO 8601, UTC.
    std::string savedAt;
    std::vector<SavedCamera> cameras;
    std::vector<SavedDivision> divisions;
};

/// "TriggerMode[TriggerSelector=FrameStart]", for messages.
std::string labelOf(const SavedFeature& feature);

/// A value of a setting for a person. Unlike toText(), it has all digits of a float.
std::string exactText(const FeatureValue& value);

} // namespace settings
