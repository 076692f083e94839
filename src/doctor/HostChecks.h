// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "doctor/Finding.h"
#include "doctor/HostEvidence.h"

/// The checks, by what they look at. Each adds its findings. Pure, reentrant.
namespace doctor {

/// Limits, packet sizes and USB speeds of the cameras, on every system and of simulated cameras.
void checkLinks(const HostEvidence& host, Findings& findings);
/// Settings and counters of the network adapters with cameras.
void checkAdapters(const HostEvidence& host, Findings& findings);
/// Checks subnets of adapters, addresses of cameras, and which programs control the cameras.
void checkAddresses(const HostEvidence& host, Findings& findings);
/// Checks what test packets told: the largest packet of a camera that arrives, and firewalls.
void checkPaths(const HostEvidence& host, Findings& findings);
/// Memory, permissions and processors.
void checkComputer(const HostEvidence& host, Findings& findings);

} // namespace doctor
