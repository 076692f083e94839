// SPDX-License-Identifier: BSD-3-Clause
#include "cli/SettingsFile.h"

#include "cli/Failure.h"
#include "settings/SettingsDocument.h"

#include <QFile>
#include <QSaveFile>

#include <cstdio>

namespace cli {

settings::SavedSettings readSettingsFile(const QString& name) {
    const bool isStandard = name == QLatin1String(standardStream);
    const QString shown = isStandard ? QStringLiteral("The standard input") : name;
    QFile file(name);
    if (!(isStandard ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly)))
        throw Failure(QStringLiteral("%1 cannot be read: %2.").arg(shown, file.errorString()));
    QString error;
    const auto settings = settings::parseSettings(file.readAll(), error);
    if (!settings)
        throw Failure(QStringLiteral("%1 is no settings file: %2.").arg(shown, error));
    return *settings;
}

void writeSettingsFile(const QString& name, const QByteArray& text) {
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        throw Failure(QStringLiteral("%1 cannot be written: %2.").arg(name, file.errorString()));
}

} // namespace cli
