// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/ProviderFactory.h"

namespace orv {

/// Makes the providers that a configuration file names:
/// {"providers": [{"type": "virtual", "scenario": "file"}]}. A scenario file given in its place
/// is run by itself, ":name" is an embedded scenario, and ":genicam" are the cameras that are
/// really there, where the build has access to them. An empty \p file is the embedded
/// configuration. Throws a FormatError; nothing is started.
Providers makeProviders(const QString& file, ProviderHost& host,
                        const std::shared_ptr<CallCounter>& callCounter);

} // namespace orv
