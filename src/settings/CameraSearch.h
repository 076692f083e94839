// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraInfo.h"
#include "settings/SavedSettings.h"

#include <optional>
#include <string>
#include <vector>

namespace settings {

/// Which of the present cameras is a saved one.
struct FoundCamera {
    /// Index of the camera; nothing when it is missing, ambiguous or of another model.
    std::optional<std::size_t> index;
    /// "serial number", "name" or "ID": how it was found; else why not, for a person.
    std::string reason;
};

/// Looks for a saved camera by its serial number, else by the name that the user gave it (not by
/// its model, which a camera without a name has in its place), else by its ID, which has the
/// hardware address of a camera that has no serial number. A camera of another model is not taken.
/// Reentrant.
FoundCamera findSavedCamera(const SavedCamera& saved, const std::vector<CameraInfo>& present);

} // namespace settings
