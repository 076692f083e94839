// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Command.h"

namespace cli {

/// Gives the camera that the operands name an IPv4 address; see setIpCommand(). Starts no camera
/// SDK and opens no camera. Throws a Failure when the camera cannot get the address, or does not
/// answer there within 15 s.
Report changeAddress(Context& context);

} // namespace cli
