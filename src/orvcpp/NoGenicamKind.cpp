// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/ProviderKind.h"

std::optional<orv::ProviderKind> orv::genicamKind() {
    return std::nullopt;
}
