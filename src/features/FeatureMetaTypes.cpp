// SPDX-License-Identifier: BSD-3-Clause
#include "features/FeatureMetaTypes.h"

#include <QString>

#include <cstdint>

FeatureValue toFeatureValue(const QVariant& variant, std::size_t alternative) {
    switch (alternative) {
    case 0:
        return std::int64_t{variant.toLongLong()};
    case 1:
        return variant.toDouble();
    case 2:
        return variant.toBool();
    case 3:
        return variant.toString().toStdString();
    default:
        qDebug("Unsupported value of type [%zu] cannot be converted to type 'FeatureValue'.",
               alternative);
        return {};
    }
}
