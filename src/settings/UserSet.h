// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>
#include <string>

class FeatureController;

namespace settings {

/// Stores the present settings of an open camera in one of its user sets (GenICam SFNC, user set
/// control), and makes it the set with which the camera starts. Returns what went wrong, for a
/// person; empty when nothing did. Failures of calls are logged, too. Bound to the GUI thread.
std::string storeInUserSet(const std::shared_ptr<FeatureController>& camera,
                           const std::string& userSet);

} // namespace settings
