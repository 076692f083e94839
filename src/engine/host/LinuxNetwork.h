// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

namespace host {

/// Which of the adapters the label of an address names: "eth0", and also "eth0:1" or "eth0cameras"
/// of a further address, which begin with the adapter's name. Empty when it is none of them.
/// \p adapters must come from the same query as the label: if "eth10" were missing, its label would
/// be taken for one of "eth1".
std::string adapterOf(const std::string& label, const std::vector<std::string>& adapters);

} // namespace host
