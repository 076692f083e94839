// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <functional>

/// For programs whose tests measure time. Runs \p tests in a process of its own, and up to twice
/// more when they fail while a processor of the computer stood still, see HostStalls. Answers their
/// exit code, or 77 for "skipped" if the computer stood still for a tenth of the time in all three
/// runs: the cause may then be the computer as well as the product. A crash is final.
/// SPANLET_TEST_RUNS=1 in the environment runs them once, and so does Windows; under Wine,
/// run-again does it from outside. Call before the program has threads.
int runAgainAfterStalls(const std::function<int()>& tests);
