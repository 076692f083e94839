// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "settings/SavedSettings.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class FeatureController;

namespace settings {

/// The settings of a camera and what could not be read, for a person.
struct ReadSettings {
    std::vector<SavedFeature> features;
    std::vector<std::string> problems;
};

/// Reads the settings of an open camera: every feature that its description calls streamable, and
/// its bandwidth limit, as far as they can be read and written now. Those that a selector selects
/// are read for each of its values; the selectors are put back. The order is that of the
/// description. Ends early when \p isCancelled. Nothing throws. Bound to the GUI thread.
ReadSettings readSettings(const std::shared_ptr<FeatureController>& camera,
                          const std::function<bool()>& isCancelled);

} // namespace settings
