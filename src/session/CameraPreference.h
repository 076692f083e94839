// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QStringList>

namespace session {

/// The kind of cameras that a configuration file asks for.
struct CameraPreference {
    /// Value of the key "cameras"; empty when no file has it.
    QString kind;
    /// File and key, for messages.
    QString origin;
    /// What is wrong with a file, for a person: its name, and the key where one is wrong.
    QString error;
};

/// The configuration files that choose the cameras, the most important first: "spanlet.conf" in
/// configurationFolders(), and the defaults that an installation brings. Only those that exist.
/// Needs the QCoreApplication.
QStringList preferenceFiles();

/// The preference of the first of \p files that has one. A file that is wrong is an error, also
/// where it has other keys.
CameraPreference cameraPreference(const QStringList& files);

} // namespace session
