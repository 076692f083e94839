// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace fakecamera {

/// Moves the calling program into a network of its own with a loopback adapter only: it finds only
/// its own fake cameras, and tests with the same addresses can run at the same time. Call before
/// the program has threads. Answers false and does nothing when the user may not do so.
bool enterOwnNetwork();

/// Waits until no other test program uses fake cameras in the host's network, and locks out others
/// until this program ends.
void waitForHostNetwork();

} // namespace fakecamera
