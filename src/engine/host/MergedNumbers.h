// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace host {

/// Numbers for things that several sources number, each without knowing of the others: no two
/// things get the same number, and a thing keeps its number. Reentrant.
class MergedNumbers {
public:
    struct Origin {
        std::size_t source = 0;
        std::uint32_t number = 0;
    };

    /// The number, from 1, of what \p source calls \p number.
    std::uint32_t merged(std::size_t source, std::uint32_t number) {
        const auto next = static_cast<std::uint32_t>(m_origins.size() + 1);
        const auto [entry, added] = m_merged.emplace(std::pair(source, number), next);
        if (added)
            m_origins.push_back({source, number});
        return entry->second;
    }

    /// Where a merged number comes from; empty for a number that was never given.
    std::optional<Origin> origin(std::uint32_t mergedNumber) const {
        if (mergedNumber == 0 || mergedNumber > m_origins.size())
            return std::nullopt;
        return m_origins[mergedNumber - 1];
    }

private:
    std::map<std::pair<std::size_t, std::uint32_t>, std::uint32_t> m_merged;
    std::vector<Origin> m_origins;
};

} // namespace host
