// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "doctor/HostEvidence.h"

#include <string>

/// How adapters, their subnets and the cameras belong together. Pure, reentrant.
namespace doctor {

/// Whether two cameras have one address. A camera may be in a list twice, once for each adapter.
bool areTwins(const NetworkCamera& one, const NetworkCamera& other);

/// Whether a GigE camera is on the adapter, or on one that sends by it: found by broadcast or by
/// the camera SDK.
bool hasCameras(const HostEvidence& host, const std::string& adapter);

/// Whether an address of one adapter is in a subnet of the other.
bool overlap(const AdapterEvidence& one, const AdapterEvidence& other);

/// Whether another adapter has a subnet of this one.
bool sharesSubnet(const HostEvidence& host, const AdapterEvidence& adapter);

/// Null when there is none.
const AdapterEvidence* findAdapter(const HostEvidence& host, const std::string& name);

/// Whether an address is one of this host's own.
bool isOwnAddress(const HostEvidence& host, std::uint32_t address);

/// An address for a camera in a subnet of \p adapter that neither this host nor a known camera has:
/// with the camera's own last digits where that one is free. 0 when there is none.
std::uint32_t proposedAddress(const HostEvidence& host, const AdapterEvidence& adapter,
                              std::uint32_t present);

} // namespace doctor
