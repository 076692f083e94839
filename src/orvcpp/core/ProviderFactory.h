// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/CallCounter.h"
#include "orvcpp/core/Provider.h"

#include <QString>

#include <memory>
#include <vector>

namespace orv {

using Providers = std::vector<std::shared_ptr<Provider>>;

/// Makes the providers that a configuration names, without starting them. Throws a FormatError.
using ProviderFactory = Providers (*)(const QString& configuration, ProviderHost& host,
                                      const std::shared_ptr<CallCounter>& callCounter);

} // namespace orv
