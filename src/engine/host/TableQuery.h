// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace host {

/// Fills \p buffer of \p size bytes with a table, or sets \p size to the size that it needs (null
/// and 0 to get the size). Returns the system's error code.
using TableQuery = std::function<std::uint32_t(void* buffer, std::uint32_t& size)>;

/// Code of a query whose buffer is too small for the table.
constexpr std::uint32_t insufficientBuffer = 122;

/// Calls \p query for the size and then for the table. Empty on an error.
std::optional<std::vector<std::byte>> readTable(const TableQuery& query);

} // namespace host
