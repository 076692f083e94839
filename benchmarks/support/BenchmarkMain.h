// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

/// Runs the registered benchmarks as the command line says. The exit code is 1 when one of them
/// has failed or has missed a limit, so that a script sees it.
int runBenchmarks(int argc, char** argv);

/// Puts the limit of a benchmark beside its figures, and whether it was kept.
void judge(benchmark::State& state, const std::string& limit, bool kept);

/// Measures what \p few and then \p many cameras cost, and judges that the growth from one to the
/// other is linear: at most \p limit times, where \p many / \p few would be.
void judgeGrowth(benchmark::State& state, int few, int many, double limit,
                 const std::function<double(int count)>& milliseconds);
