// SPDX-License-Identifier: BSD-3-Clause
#include "settings/SelectorPositions.h"

#include "sdk/ErrorText.h"

#include <algorithm>

namespace settings {

std::string SelectorPositions::select(const Selection& selection) {
    for (const auto& [selector, value] : selection) {
        if (const std::string problem = move(selector, value); !problem.empty())
            return problem;
    }
    return {};
}

void SelectorPositions::setHome(const std::string& selector, const FeatureValue& value) {
    m_homes[selector] = value;
    m_moved.insert(selector);
}

std::vector<std::string> SelectorPositions::putBack() {
    std::vector<std::string> problems;
    const std::map<std::string, FeatureValue> homes = m_homes;
    const auto depth = [this](const std::string& selector) {
        const Setting* const setting = m_table.find(selector);
        return setting ? m_table.selectorsOf(*setting).size() : 0;
    };
    std::vector<std::string> moved(m_moved.begin(), m_moved.end());
    std::stable_sort(moved.begin(), moved.end(), [&](const auto& first, const auto& second) {
        return depth(first) < depth(second);
    });
    for (const std::string& selector : moved) {
        if (const std::string problem = move(selector, homes.at(selector)); !problem.empty())
            problems.push_back(problem);
    }
    m_homes.clear();
    m_moved.clear();
    return problems;
}

void SelectorPositions::readHomes() {
    for (const Setting& setting : m_table.all()) {
        FeatureValue present;
        if (!setting.selected().empty() && setting.read(present) == OrvErrorSuccess)
            m_homes.emplace(setting.name(), present);
    }
}

std::string SelectorPositions::move(const std::string& selector, const FeatureValue& value) {
    const auto failed = [&](const std::string& reason) {
        return selector + " cannot be set to " + exactText(value) + ": " + reason;
    };
    const Setting* const setting = m_table.find(selector);
    if (!setting)
        return failed("the camera has no such feature");
    FeatureValue present;
    if (const OrvErrorType error = setting->read(present); error != OrvErrorSuccess)
        return failed(errorText(error));
    if (present == value)
        return {};
    if (m_moved.empty())
        readHomes();
    m_homes.emplace(selector, present);
    m_moved.insert(selector);
    if (present.index() != value.index())
        return failed("it has values of another type");
    const OrvErrorType error = setting->write(value);
    return error == OrvErrorSuccess ? std::string() : failed(errorText(error));
}

} // namespace settings
