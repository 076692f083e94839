// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

/// Runs the registered benchmarks as the command line says. The exit code is 1 when one of them
/// has failed or has missed a limit, so that a script sees it.
int runBenchmarks(int argc, char** argv);

/// Adds the limit of a benchmark to its figures, and MISSED when it was not kept.
void judge(benchmark::State& state, const std::string& limit, bool kept);

/// Measures with \p few and with \p many cameras. The limit is missed when the second takes more
/// than \p limit times as long; linear growth would be \p many / \p few.
void judgeGrowth(benchmark::State& state, int few, int many, double limit,
                 const std::function<double(int count)>& milliseconds);
