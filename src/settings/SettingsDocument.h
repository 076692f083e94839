// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "settings/SavedSettings.h"

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <optional>

namespace settings {

/// The settings as the JSON document of a settings file. Thread-safe, as the functions below.
QJsonObject toDocument(const SavedSettings& settings);

/// A value in a settings file. An integer beyond 2^53 is a decimal text, since a JSON number is not
/// exact there.
QJsonValue toJson(const FeatureValue& value);

/// Reads the text of a settings file. Nothing when it is not one; \p error then tells a person
/// what is wrong where, for example "cameras[0].features[3].value: ...". Unknown members are
/// ignored, so that a later version may add some.
std::optional<SavedSettings> parseSettings(const QByteArray& text, QString& error);

} // namespace settings
