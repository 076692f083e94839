// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "settings/SavedSettings.h"

#include <QString>

namespace cli {

/// The name of a settings file that means the standard streams.
inline constexpr char standardStream[] = "-";

/// Reads a settings file, or the standard input. Throws a Failure that tells what is wrong where.
settings::SavedSettings readSettingsFile(const QString& file);

/// Writes a settings file. Either all of it is written or the former file stays. Throws a Failure.
void writeSettingsFile(const QString& file, const QByteArray& text);

} // namespace cli
