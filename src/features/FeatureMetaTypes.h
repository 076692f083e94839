// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureInfo.h"
#include "features/FeatureValue.h"

#include <QMetaType>
#include <QVariant>

#include <cstddef>

/// Lets variants hold a FeatureInfo; the first one registers the type's name with Qt.
Q_DECLARE_METATYPE(FeatureInfo)

/// Converts a variant to the alternative of FeatureValue with the index \p alternative; an unknown
/// index gives the default value and a debug message. Thread-safe.
FeatureValue toFeatureValue(const QVariant& variant, std::size_t alternative);
