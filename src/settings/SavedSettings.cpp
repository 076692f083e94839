// SPDX-License-Identifier: BSD-3-Clause
#include "settings/SavedSettings.h"

#include "features/FeatureText.h"

namespace settings {

std::string labelOf(const SavedFeature& feature) {
    std::string text = feature.name;
    for (const auto& [selector, value] : feature.selection)
        text += '[' + selector + '=' + exactText(value) + ']';
    return text;
}

std::string exactText(const FeatureValue& value) {
    const auto* const number = std::get_if<double>(&value);
    return number ? toDoubleText(*number).toStdString() : toText(value);
}

} // namespace settings
