// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/CallCounter.h"
#include "orvcpp/core/ObjectReader.h"
#include "orvcpp/core/Provider.h"

#include <QString>

#include <memory>
#include <optional>

namespace orv {

/// What every kind of provider is made from.
struct ProviderContext {
    ProviderHost& host;
    const std::shared_ptr<CallCounter>& callCounter;
    /// Folder of the configuration file.
    QString folder;
};

/// A kind of provider that a configuration may name.
struct ProviderKind {
    const char* name;
    /// Makes it with the settings that \p reader has for it.
    std::shared_ptr<Provider> (*read)(ObjectReader& reader, const ProviderContext& context);
};

/// The cameras that are really there; nothing where the build has no access to them.
std::optional<ProviderKind> genicamKind();

} // namespace orv
