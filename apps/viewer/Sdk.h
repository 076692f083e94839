// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <vector>

namespace viewer {

/// Reads one of the SDK's texts, which are asked for twice: the length, then the text. \p get is
/// called with a buffer and a length. Empty when the SDK answers an error.
template <typename Getter> QString sdkText(Getter&& get) {
    std::uint32_t length = 0;
    if (get(nullptr, length) != OrvErrorSuccess || length == 0)
        return {};
    std::vector<char> buffer(length);
    if (get(buffer.data(), length) != OrvErrorSuccess)
        return {};
    return QString::fromUtf8(buffer.data(), static_cast<int>(length));
}

/// Reads one of the SDK's lists in the same way, with an array and a count.
template <typename T, typename Getter> std::vector<std::shared_ptr<T>> sdkList(Getter&& get) {
    std::uint32_t count = 0;
    if (get(nullptr, count) != OrvErrorSuccess || count == 0)
        return {};
    std::vector<std::shared_ptr<T>> list(count);
    if (get(list.data(), count) != OrvErrorSuccess)
        return {};
    list.resize(count);
    return list;
}

} // namespace viewer
