// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/CallCounter.h"
#include "orvcpp/core/ObjectReader.h"
#include "orvcpp/core/Provider.h"

#include <QString>

#include <memory>
#include <optional>

namespace orv {

/// What every provider is made with.
struct ProviderContext {
    ProviderHost& host;
    const std::shared_ptr<CallCounter>& callCounter;
    /// Folder of the configuration file.
    QString folder;
};

/// A kind of provider that a configuration may name.
struct ProviderKind {
    const char* name;
    /// Makes the provider from its settings in \p reader.
    std::shared_ptr<Provider> (*read)(ObjectReader& reader, const ProviderContext& context);
};

/// The provider of real cameras; empty when the build has none.
std::optional<ProviderKind> genicamKind();

} // namespace orv
