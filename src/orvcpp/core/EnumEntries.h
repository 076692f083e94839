// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/EnumEntry.h"

#include <algorithm>
#include <string>
#include <vector>

namespace orv {

using EnumEntries = std::vector<OrvCPP::EnumEntry>;

/// The first entry for which \p matches holds; null when there is none.
template <typename Matches>
const OrvCPP::EnumEntry* findEntryIf(const EnumEntries& entries, const Matches& matches) {
    const auto found = std::find_if(entries.begin(), entries.end(), matches);
    return found == entries.end() ? nullptr : &*found;
}

inline const OrvCPP::EnumEntry* findEntry(const EnumEntries& entries, const std::string& name) {
    return findEntryIf(entries, [&](const auto& entry) { return entry.name == name; });
}

inline const OrvCPP::EnumEntry* findEntry(const EnumEntries& entries, std::int64_t value) {
    return findEntryIf(entries, [&](const auto& entry) { return entry.value == value; });
}

} // namespace orv
