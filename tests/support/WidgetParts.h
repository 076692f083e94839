// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QSettings>
#include <QWidget>

#include <stdexcept>
#include <string>

/// The part of \p window that has this name in its form.
template <class Part> Part& partOf(const QWidget& window, const std::string& name) {
    auto* found = window.findChild<Part*>(QString::fromStdString(name));
    return found != nullptr ? *found : throw std::runtime_error(name);
}

/// Sets a value in the user's store, which must be that of the test.
inline void storeSetting(const char* key, const QVariant& value) {
    QSettings(QStringLiteral("Meridane"), QStringLiteral("Spanlet"))
        .setValue(QLatin1String(key), value);
}

/// Keeps the Get Started page from opening over the dialog.
inline void switchOffHelpAtStart() {
    storeSetting("Support Dialog/active", false);
}
