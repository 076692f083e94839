// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <optional>

namespace OrvCPP {
class Interface;
class OrvSystem;
} // namespace OrvCPP

namespace viewer {

/// Nominal speed of an interface of \p system in MB/s (10^6 bytes), as Spanlet reads it from the
/// host, for simulated cameras from that of their scenario; nothing where the host does not tell.
/// Asks the operating system anew. Bound to the GUI thread.
std::optional<double> linkMegabytesPerSecond(const OrvCPP::OrvSystem& system,
                                             const OrvCPP::Interface& interface);

} // namespace viewer
