// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <filesystem>

namespace platform {

/// The folder of the data that belong to this code in an installation: "share/spanlet" below the
/// prefix, found from the file of the program, or of the plug-in where the code is part of that. In
/// the build folder there is no such folder. Empty where the system does not tell the file.
/// Reentrant.
std::filesystem::path installedDataFolder();

} // namespace platform
