// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "features/FeatureInfo.h"
#include "features/FeatureValue.h"

#include <QMetaType>
#include <QVariant>

#include <cstddef>

/// Lets a FeatureInfo travel in variants; the first one makes it known to Qt by its name.
Q_DECLARE_METATYPE(FeatureInfo)

/// The variant as the alternative of FeatureValue with the index \p alternative; an index that
/// FeatureValue does not have gives its default and a debug message. Thread-safe.
FeatureValue toFeatureValue(const QVariant& variant, std::size_t alternative);
