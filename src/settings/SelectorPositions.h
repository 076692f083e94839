// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "settings/SavedSettings.h"
#include "settings/SettingTable.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace settings {

/// Moves the selectors of a camera, and puts them back at the end. Nothing throws or logs. Bound to
/// the thread of the camera.
class SelectorPositions {
public:
    /// \p table must outlive the object.
    explicit SelectorPositions(const SettingTable& table) : m_table(table) {}
    ~SelectorPositions() { putBack(); }

    SelectorPositions(const SelectorPositions&) = delete;
    SelectorPositions& operator=(const SelectorPositions&) = delete;

    /// Gives each selector its value. Returns why that is not possible, for a person; empty when it
    /// was.
    std::string select(const Selection& selection);
    /// The value that putBack() gives a selector, in place of the one that it had.
    void setHome(const std::string& selector, const FeatureValue& value);
    /// Gives the selectors that were moved their former values. The outermost come
    /// first, since they decide what the others show. Returns what failed.
    std::vector<std::string> putBack();

private:
    void readHomes();
    std::string move(const std::string& selector, const FeatureValue& value);

    const SettingTable& m_table;
    /// Of all selectors, read before the first one moves: another one may show another value then.
    std::map<std::string, FeatureValue> m_homes;
    std::set<std::string> m_moved;
};

} // namespace settings
