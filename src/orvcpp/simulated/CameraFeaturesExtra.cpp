// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/CameraFeatures.h"

#include <QString>

#include <string>

namespace orv::simulated {

namespace {

// Without a common divisor, so that every category has features of every type, some of them
// read-only.
constexpr std::int64_t categories = 8;
constexpr std::int64_t types = 5;
constexpr std::int64_t readOnlyInterval = 7;

FeatureNode& addOne(FeatureSet& set, const std::string& name, std::int64_t number) {
    switch (number % types) {
    case 0:
        return set.floating(name).floatLimits(0, 100'000).value(static_cast<double>(number) / 2);
    case 1:
        return set.integer(name).limits(0, 100'000).value(number);
    case 2:
        return set.enumeration(name).entry("Off", 0).entry("On", 1).entry("Auto", 2, false);
    case 3:
        return set.boolean(name).value(number % 2 == 0);
    default:
        return set.string(name).value("Text " + std::to_string(number));
    }
}

} // namespace

void addExtraFeatures(FeatureSet& set, std::int64_t count) {
    for (std::int64_t number = 1; number <= count; ++number) {
        set.category("/ExtraControl/Group" + std::to_string(number % categories + 1));
        const std::string name =
            QStringLiteral("Extra%1").arg(number, 5, 10, QLatin1Char('0')).toStdString();
        FeatureNode& added = addOne(set, name, number);
        if (number % readOnlyInterval == 0)
            added.readOnly();
    }
}

} // namespace orv::simulated
