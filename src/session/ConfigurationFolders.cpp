// SPDX-License-Identifier: BSD-3-Clause
#include "session/ConfigurationFolders.h"

#include <QStandardPaths>

namespace session {

QStringList configurationFolders() {
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (QString& folder : folders)
        folder += QLatin1String("/spanlet");
    const QString chosen = qEnvironmentVariable("SPANLET_CONFIG_HOME");
    if (!chosen.isEmpty())
        folders.first() = chosen;
    return folders;
}

} // namespace session
