// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <string>

namespace host {

/// Index of the network adapter that the label of an address names: "eth0", and also "eth0:1" or
/// "eth0cameras" of a further address, which begin with the adapter's name. 0 when there is none.
std::uint32_t interfaceIndexOf(std::string label);

} // namespace host
