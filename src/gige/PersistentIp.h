// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gige/ForceIp.h"

#include <cstdint>

namespace gige {

enum class PersistentResult {
    /// The camera has the settings and reported them back.
    Written,
    NoAnswer,
    /// Another program controls the camera.
    Controlled,
    /// The camera refused to write or read a register.
    Refused,
    /// The camera reports other values than were written.
    NotKept,
};

/// Writes \p settings into the camera at \p camera and switches them on, for its next starts; the
/// other ways to an address stay as they are, and come after this one. Controls the camera
/// meanwhile, and reads all back. Changes nothing at once. Reentrant.
PersistentResult writePersistentIp(std::uint32_t camera, const IpSettings& settings);

} // namespace gige
