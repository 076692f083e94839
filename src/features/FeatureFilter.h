// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QStringList>

/// Which features matter for bandwidth, as a settings file lists them. Reentrant.
class FeatureFilter {
public:
    /// "plugins/Spanlet_Settings.json" below the application's directory. Where that is missing,
    /// the file of the installation that this code belongs to. Needs an application.
    static QString shippedFile();

    /// Reads the file, once. One that cannot be read is reported as a Qt warning, and leaves a
    /// filter that no feature passes.
    explicit FeatureFilter(const QString& file);

    /// Names are those of the SDK; a stream's module may have its number ("Stream0").
    bool accepts(const QString& module, const QString& category, const QString& name) const;

private:
    /// Names of features, in whatever module.
    QStringList m_features;
    /// Module, colon, category, as in "Stream:/Statistics".
    QStringList m_categories;
};
