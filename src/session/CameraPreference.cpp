// SPDX-License-Identifier: BSD-3-Clause
#include "session/CameraPreference.h"

#include "platform/InstalledData.h"
#include "session/ConfigurationFolders.h"

#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace session {

namespace {

const QLatin1String camerasKey("cameras");

/// What is wrong with the file as a whole; empty when nothing is.
QString fault(const QString& file, const QSettings& settings) {
    // Reads all lines, which the status then tells about.
    const QStringList keys = settings.allKeys();
    if (!QFileInfo(file).isReadable() || settings.status() == QSettings::AccessError)
        return QStringLiteral("%1 cannot be read.").arg(file);
    if (settings.status() != QSettings::NoError)
        return QStringLiteral("%1 has a line that is not a setting: it takes lines such as "
                              "\"cameras=simulated\".")
            .arg(file);
    for (const QString& key : keys) {
        if (key != camerasKey)
            return QStringLiteral("%1: There is no key \"%2\". There is: cameras.").arg(file, key);
    }
    return {};
}

} // namespace

QStringList preferenceFiles() {
    QStringList files;
    for (const QString& folder : configurationFolders())
        files.append(folder + QLatin1String("/spanlet.conf"));
    // Absent beside a program in the build folder, which works with simulated cameras unless it is
    // told otherwise.
    files.append(QString::fromStdString(
        (platform::installedDataFolder() / "defaults.conf").generic_u8string()));
    const auto isAbsent = [](const QString& file) {
        return !QFileInfo::exists(file);
    };
    files.erase(std::remove_if(files.begin(), files.end(), isAbsent), files.end());
    return files;
}

CameraPreference cameraPreference(const QStringList& files) {
    for (const QString& file : files) {
        const QSettings settings(file, QSettings::IniFormat);
        const QString error = fault(file, settings);
        if (!error.isEmpty())
            return {{}, {}, error};
        // A value with commas is a list.
        const QString kind = settings.value(camerasKey).toStringList().join(QLatin1Char(','));
        if (settings.contains(camerasKey))
            return {kind, QStringLiteral("%1: cameras").arg(file), {}};
    }
    return {};
}

} // namespace session
