// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "settings/SavedSettings.h"

#include <QString>

namespace cli {

class Interruption;

/// The name of a settings file that means the standard streams.
inline constexpr char standardStream[] = "-";

/// Reads a settings file, or the standard input. Throws a Failure that tells what is wrong where,
/// also when the end is requested before all was read.
settings::SavedSettings readSettingsFile(const QString& file, Interruption& interruption);

} // namespace cli
