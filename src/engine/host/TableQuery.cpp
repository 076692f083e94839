// SPDX-License-Identifier: BSD-3-Clause
#include "engine/host/TableQuery.h"

namespace host {

std::optional<std::vector<std::byte>> readTable(const TableQuery& query) {
    std::uint32_t size = 0;
    std::vector<std::byte> buffer;
    if (query(nullptr, size) == insufficientBuffer)
        buffer.resize(size);
    // The second call may succeed without a buffer: there is no table then.
    if (query(buffer.empty() ? nullptr : buffer.data(), size) != 0 || buffer.empty())
        return std::nullopt;
    return buffer;
}

} // namespace host
