// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <algorithm>
#include <vector>

namespace orv {

/// OrvErrorAlreadyDone when \p observer is in the list.
template <typename Observer>
OrvErrorType addObserver(std::vector<Observer>& observers, const Observer& observer) {
    if (std::find(observers.begin(), observers.end(), observer) != observers.end())
        return OrvErrorAlreadyDone;
    observers.push_back(observer);
    return OrvErrorSuccess;
}

/// OrvErrorNotFound when \p observer is not in the list.
template <typename Observer>
OrvErrorType removeObserver(std::vector<Observer>& observers, const Observer& observer) {
    const auto found = std::find(observers.begin(), observers.end(), observer);
    if (found == observers.end())
        return OrvErrorNotFound;
    observers.erase(found);
    return OrvErrorSuccess;
}

} // namespace orv
