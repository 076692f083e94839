// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/PlannedLink.h"

namespace cli {

/// Streams from all cameras of a link whose plan was applied, for \p seconds. As long as frames are
/// lost, lowers what is usable by 5 % and applies the new plan, up to ten times, and streams again.
/// Notes each round. Returns whether the last one lost no frame. Throws a Failure when a camera
/// does not stream, is disconnected, or sends nothing though it is not triggered, and when the
/// program is to end; the last plan then stays.
bool verifyPlan(PlannedLink& link, Cameras& cameras, double seconds, Interruption& interruption);

} // namespace cli
