// SPDX-License-Identifier: BSD-3-Clause
#include "settings/SelectorPositions.h"

#include "sdk/ErrorText.h"

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
}

std::vector<std::string> SelectorPositions::putBack() {
    std::vector<std::string> problems;
    const std::map<std::string, FeatureValue> homes = std::exchange(m_homes, {});
    for (const auto& [selector, value] : homes) {
        if (const std::string problem = move(selector, value); !problem.empty())
            problems.push_back(problem);
    }
    m_homes.clear();
    return problems;
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
    m_homes.emplace(selector, present);
    if (present == value)
        return {};
    if (present.index() != value.index())
        return failed("it has values of another type");
    const OrvErrorType error = setting->write(value);
    return error == OrvErrorSuccess ? std::string() : failed(errorText(error));
}

} // namespace settings
