// SPDX-License-Identifier: BSD-3-Clause
#include "settings/SettingTable.h"

#include "features/RepeatedCall.h"
#include "sdk/ErrorText.h"
#include "sdk/OrvFeatureContainerWrapper.h"
#include "sdk/OrvFeatureWrapper.h"

#include <algorithm>

namespace settings {

SettingTable::SettingTable(const OrvFeatureContainerWrapper& camera) {
    std::vector<std::shared_ptr<OrvFeatureWrapper>> features;
    OrvErrorType error = OrvErrorSuccess;
    if (!succeedsRepeatedly(
            [&] { return (error = camera.GetFeatures(features)) == OrvErrorSuccess; }))
        m_problems.push_back("Its features cannot be read. " + errorText(error));
    for (const auto& feature : features) {
        Setting setting(feature);
        error = setting.describe();
        if (error != OrvErrorSuccess) {
            m_problems.push_back("A feature cannot be read: '" + setting.name() + "'. " +
                                 errorText(error));
            continue;
        }
        m_byName.emplace(setting.name(), m_settings.size());
        for (const std::string& selected : setting.selected())
            m_selectors[selected].push_back(setting.name());
        m_settings.push_back(std::move(setting));
    }
}

const Setting* SettingTable::find(const std::string& name) const {
    const auto found = m_byName.find(name);
    return found == m_byName.end() ? nullptr : &m_settings[found->second];
}

std::vector<const Setting*> SettingTable::selectorsOf(const Setting& setting) const {
    std::vector<const Setting*> found;
    addSelectorsOf(setting, found);
    // A description may be circular.
    found.erase(std::remove(found.begin(), found.end(), &setting), found.end());
    std::reverse(found.begin(), found.end());
    return found;
}

void SettingTable::addSelectorsOf(const Setting& setting,
                                  std::vector<const Setting*>& found) const {
    const auto direct = m_selectors.find(setting.name());
    if (direct == m_selectors.end())
        return;
    for (const std::string& name : direct->second) {
        const Setting* const selector = find(name);
        if (!selector || std::count(found.begin(), found.end(), selector) > 0)
            continue;
        found.push_back(selector);
        addSelectorsOf(*selector, found);
    }
}

} // namespace settings
