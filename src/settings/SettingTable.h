// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "settings/Setting.h"

#include <map>
#include <string>
#include <vector>

class OrvFeatureContainerWrapper;

namespace settings {

/// The features of the module "Camera" of an open camera, and which of them select which. Nothing
/// throws or logs. Bound to the thread of the camera.
class SettingTable {
public:
    explicit SettingTable(const OrvFeatureContainerWrapper& camera);

    /// What could not be read, for a person.
    const std::vector<std::string>& problems() const { return m_problems; }
    /// All features, in the order of the camera's description.
    const std::vector<Setting>& all() const { return m_settings; }
    /// Null when the camera has no such feature.
    const Setting* find(const std::string& name) const;
    /// The features that select \p setting, directly or through another selector, the outermost
    /// first.
    std::vector<const Setting*> selectorsOf(const Setting& setting) const;

private:
    void addSelectorsOf(const Setting& setting, std::vector<const Setting*>& found) const;

    std::vector<Setting> m_settings;
    /// Indices in m_settings.
    std::map<std::string, std::size_t> m_byName;
    /// Names of the direct selectors of a feature.
    std::map<std::string, std::vector<std::string>> m_selectors;
    std::vector<std::string> m_problems;
};

} // namespace settings
