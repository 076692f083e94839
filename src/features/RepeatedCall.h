// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Calls \p step until it succeeds, at most three times, since a busy camera may refuse a call.
/// Returns whether it did.
template <typename Step> bool succeedsRepeatedly(const Step& step) {
    constexpr int mostAttempts = 3;
    for (int i = 0; i < mostAttempts; ++i) {
        if (step())
            return true;
    }
    return false;
}
