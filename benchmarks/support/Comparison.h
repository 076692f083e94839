// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "benchmarks/support/ThreadClock.h"

#include <algorithm>
#include <limits>

/// Nanoseconds of one call of the subject, and of one call of the baseline.
struct Comparison {
    double subject = std::numeric_limits<double>::max();
    double baseline = std::numeric_limits<double>::max();

    double ratio() const { return subject / baseline; }
};

template <class Function> double nanosecondsPerCall(Function& function, int calls) {
    const auto repeat = [&function, calls] {
        for (int i = 0; i < calls; ++i)
            function();
    };
    return nanosecondsOf(repeat) / calls;
}

/// Measures both in turns and keeps the best turn of each, so that other programs disturb both
/// alike.
template <class Subject, class Baseline>
Comparison compare(Subject subject, Baseline baseline, int calls, int turns) {
    Comparison best;
    for (int i = 0; i < turns; ++i) {
        best.baseline = std::min(best.baseline, nanosecondsPerCall(baseline, calls));
        best.subject = std::min(best.subject, nanosecondsPerCall(subject, calls));
    }
    return best;
}
