// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureFilter.h"

#include "platform/InstalledData.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// Empty for anything but an array; an element that is not a text is an empty one.
QStringList texts(const QJsonValue& value) {
    QStringList result;
    for (const QJsonValue& element : value.toArray())
        result.append(element.toString());
    return result;
}

} // namespace

QString FeatureFilter::shippedFile() {
    const QString name = QStringLiteral("Spanlet_Settings.json");
    const QString beside =
        QCoreApplication::applicationDirPath() + QStringLiteral("/plugins/") + name;
    const auto installed =
        QString::fromStdString(platform::installedDataFolder().generic_u8string()) +
        QLatin1Char('/') + name;
    return !QFileInfo::exists(beside) && QFileInfo::exists(installed) ? installed : beside;
}

FeatureFilter::FeatureFilter(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("WARN: Couldn't open file with 'Presets'. %s", qUtf8Printable(fileName));
        return;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError) {
        // The pattern has no "%1", so arg() logs a warning of its own with the description.
        qWarning("%s",
                 qUtf8Printable(QStringLiteral("JSON parse error: '%s'").arg(error.errorString())));
        return;
    }
    const QJsonObject settings = document.object();
    m_features = texts(settings[QStringLiteral("FeaturesFilter")]);
    m_categories = texts(settings[QStringLiteral("CategoriesFilter")]);
}

bool FeatureFilter::accepts(const QString& module, const QString& category,
                            const QString& name) const {
    if (m_features.contains(name))
        return true;
    // One name for all streams.
    const QString stream = QStringLiteral("Stream");
    return m_categories.contains(
        QStringLiteral("%1:%2").arg(module.startsWith(stream) ? stream : module, category));
}
