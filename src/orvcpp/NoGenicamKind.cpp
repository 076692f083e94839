// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/ProviderKind.h"

std::optional<orv::ProviderKind> orv::genicamKind() {
    return std::nullopt;
}
