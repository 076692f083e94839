// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/ProviderFactory.h"

namespace orv {

/// Makes the providers that a configuration file names:
/// {"providers": [{"type": "virtual", "scenario": "file"}]}. \p file can also be a scenario file,
/// an embedded scenario (":name"), or ":genicam" for real cameras, in a build that has access to
/// them. When it is empty, the embedded configuration is used. Throws a FormatError; nothing is
/// started.
Providers makeProviders(const QString& file, ProviderHost& host,
                        const std::shared_ptr<CallCounter>& callCounter);

} // namespace orv
