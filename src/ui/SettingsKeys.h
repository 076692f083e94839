// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/SafetyMargins.h"

#include <QLatin1String>
#include <QSettings>
#include <QVariant>

/// Keys and defaults of all persisted settings.
namespace SettingsKeys {

/// Key of a value, and its default.
template <typename T> struct Setting {
    QLatin1String key;
    T defaultValue;
};

/// Percentage of an interface's bandwidth that Auto Set leaves free.
inline const Setting<int> interfaceGigE{QLatin1String("Safety Margins/interface_GigE"),
                                        recommendedMarginsGigE.interfacePercent};
inline const Setting<int> interfaceUsb{QLatin1String("Safety Margins/interface_USB"),
                                       recommendedMarginsUsb.interfacePercent};
/// Percentage of its payload bandwidth that Auto Set gives a camera on top.
inline const Setting<int> cameraGigE{QLatin1String("Safety Margins/camera_GigE"),
                                     recommendedMarginsGigE.cameraPercent};
inline const Setting<int> cameraUsb{QLatin1String("Safety Margins/camera_USB"),
                                    recommendedMarginsUsb.cameraPercent};
/// Whether the log table shows debug messages.
inline const Setting<bool> showDebugMessages{QLatin1String("ShowDebugMessages"), false};
/// Whether the Get Started dialog opens together with the main dialog.
inline const Setting<bool> supportDialogActive{QLatin1String("Support Dialog/active"), true};

/// The stored value, the default when there is none.
template <typename T> T read(const QSettings& store, const Setting<T>& setting) {
    return store.value(setting.key, setting.defaultValue).template value<T>();
}

/// A stored margin in percent, brought into 0 to 50; the default when there is none. Text that is
/// no \p Number reads as 0.
template <typename Number> Number readMargin(const QSettings& store, const Setting<int>& margin) {
    const QVariant stored = store.value(margin.key, margin.defaultValue);
    return qBound(Number{0}, stored.value<Number>(), Number{50});
}

} // namespace SettingsKeys
