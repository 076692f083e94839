// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <ctime>

/// Processor time of the calling thread, in nanoseconds. Other programs and waiting do not count.
inline double threadNanoseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

/// Processor time that a call takes on this thread, in nanoseconds.
template <class Function> double nanosecondsOf(Function&& function) {
    const double start = threadNanoseconds();
    function();
    return threadNanoseconds() - start;
}
