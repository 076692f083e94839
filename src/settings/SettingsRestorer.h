// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "settings/SavedSettings.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class FeatureController;

namespace settings {

/// A feature that does not have its saved value.
struct Difference {
    SavedFeature saved;
    /// Nothing when it cannot be read.
    std::optional<FeatureValue> present;
    /// Why it does not have its saved value, for a person. After a comparison: why the camera would
    /// not take it as it is now; empty when it may.
    std::string reason;
};

/// What has become of the settings of a camera.
struct RestoredSettings {
    /// Whether it ended early: what follows is not complete then.
    bool isInterrupted = false;
    /// How many features have their saved value now and had another one before. 0 when interrupted.
    int changed = 0;
    std::vector<Difference> differences;
    /// What else went wrong, for a person.
    std::vector<std::string> problems;

    bool isComplete() const { return !isInterrupted && differences.empty() && problems.empty(); }
};

/// Compares an open camera with saved settings. Writes nothing but selectors, which are put back.
/// Ends early when \p isCancelled, which is a problem. Nothing throws. Bound to the GUI thread.
RestoredSettings compareSettings(const std::shared_ptr<FeatureController>& camera,
                                 const std::vector<SavedFeature>& saved,
                                 const std::function<bool()>& isCancelled);

/// Writes saved settings to an open camera, and compares it with them. Writes what the camera has
/// refused again after the others, until a pass changes nothing. Otherwise as compareSettings().
RestoredSettings restoreSettings(const std::shared_ptr<FeatureController>& camera,
                                 const std::vector<SavedFeature>& saved,
                                 const std::function<bool()>& isCancelled);

} // namespace settings
