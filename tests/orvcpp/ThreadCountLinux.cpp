// SPDX-License-Identifier: BSD-3-Clause
#include "tests/orvcpp/ThreadCount.h"

#include <filesystem>
#include <iterator>

int threadCount() {
    const std::filesystem::directory_iterator all("/proc/self/task");
    return static_cast<int>(std::distance(begin(all), end(all)));
}
