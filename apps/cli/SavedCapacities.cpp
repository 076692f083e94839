// SPDX-License-Identifier: BSD-3-Clause
#include "cli/SavedCapacities.h"

#include "cli/Failure.h"
#include "logging/Log.h"
#include "session/ConfigurationFolders.h"

#include <QSettings>
#include <QUrl>

#include <cmath>

namespace cli {

namespace {

const QLatin1String capacityKey("bytesPerSecond");
const QLatin1String speedKey("linkBitsPerSecond");
const QLatin1String dateKey("date");
const QLatin1String interfacesKey("interfaces");
/// A terabyte per second: more is a broken entry.
constexpr double mostBytes = 1e12;

void requireFormat(const QSettings& settings) {
    // Without it, only the sections that are asked for are read.
    settings.allKeys();
    if (settings.status() == QSettings::FormatError)
        throw Failure(QStringLiteral("%1 is broken. Remove it, and repeat \"spanlet calibrate "
                                     "--save\".")
                          .arg(settings.fileName()));
}

void write(QSettings& settings) {
    requireFormat(settings);
    settings.sync();
    if (settings.status() != QSettings::NoError || !settings.isWritable())
        throw Failure(QStringLiteral("%1 cannot be written.").arg(settings.fileName()));
}

SavedCapacity read(const QSettings& settings, const QString& key) {
    const auto value = [&](const QString& name) {
        return settings.value(key + QLatin1Char('/') + name);
    };
    return {value(capacityKey).toDouble(), value(speedKey).toULongLong(),
            QDate::fromString(value(dateKey).toString(), Qt::ISODate),
            value(interfacesKey).toStringList()};
}

bool isUsable(const SavedCapacity& capacity) {
    return std::isfinite(capacity.bytesPerSecond) && capacity.bytesPerSecond >= 1 &&
           capacity.bytesPerSecond <= mostBytes && capacity.date.isValid();
}

} // namespace

SavedCapacities::SavedCapacities(bool areSimulated)
    : m_group(areSimulated ? QStringLiteral("simulated/") : QStringLiteral("real/")) {}

QString SavedCapacities::file() {
    return session::configurationFolders().constFirst() + QStringLiteral("/capacities.conf");
}

/// A link's text may have characters that separate groups.
QString SavedCapacities::keyOf(const QString& link) const {
    return m_group + QString::fromLatin1(QUrl::toPercentEncoding(link));
}

void SavedCapacities::requireWritable() {
    QSettings settings(file(), QSettings::IniFormat);
    write(settings);
}

std::optional<SavedCapacity> SavedCapacities::find(const QString& link) const {
    QSettings settings(file(), QSettings::IniFormat);
    requireFormat(settings);
    if (settings.status() != QSettings::NoError)
        throw Failure(QStringLiteral("%1 cannot be read.").arg(file()));
    const SavedCapacity found = read(settings, keyOf(link));
    settings.beginGroup(keyOf(link));
    const bool isSaved = !settings.childKeys().isEmpty();
    if (isUsable(found))
        return found;
    if (isSaved)
        logWarning(QStringLiteral("%1: The capacity of %2 is broken and is not used; \"spanlet "
                                  "calibrate --save\" replaces it.")
                       .arg(file(), link)
                       .toStdString());
    return std::nullopt;
}

void SavedCapacities::save(const QString& link, const SavedCapacity& capacity) {
    QSettings settings(file(), QSettings::IniFormat);
    settings.beginGroup(keyOf(link));
    settings.setValue(capacityKey, capacity.bytesPerSecond);
    settings.setValue(speedKey, static_cast<qulonglong>(capacity.bitsPerSecond));
    settings.setValue(dateKey, capacity.date.toString(Qt::ISODate));
    settings.setValue(interfacesKey, capacity.interfaces);
    settings.endGroup();
    write(settings);
}

QStringList SavedCapacities::forget(const QString& interface) {
    QSettings settings(file(), QSettings::IniFormat);
    settings.beginGroup(m_group.chopped(1));
    QStringList forgotten;
    for (const QString& key : settings.childGroups()) {
        const QStringList names = read(settings, key).interfaces;
        if (!interface.isEmpty() && !names.contains(interface))
            continue;
        forgotten += names;
        settings.remove(key);
    }
    settings.endGroup();
    write(settings);
    forgotten.removeDuplicates();
    return forgotten;
}

} // namespace cli
