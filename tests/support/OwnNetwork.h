// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace fakecamera {

/// Moves the calling program into a network of its own that has a loopback adapter and nothing
/// else, so that it finds its own fake cameras only and tests can run beside each other with the
/// same addresses. To be called before the program has threads. False where that is not allowed:
/// the program stays where it was.
bool enterOwnNetwork();

/// Waits until no other program has the host's network for its fake cameras, which would have the
/// same addresses, and keeps it until this program ends.
void waitForHostNetwork();

} // namespace fakecamera
