// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QStringList>

namespace session {

/// The folders of the configuration files of this program, the most important first: the user's,
/// which is $SPANLET_CONFIG_HOME, or else "spanlet" in the user's folder for configurations
/// ($XDG_CONFIG_HOME; on Windows %LOCALAPPDATA%); then "spanlet" in the system's folders
/// ($XDG_CONFIG_DIRS; on Windows the common data folder). They need not exist. Needs the
/// QCoreApplication.
QStringList configurationFolders();

} // namespace session
