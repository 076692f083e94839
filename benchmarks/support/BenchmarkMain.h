// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <benchmark/benchmark.h>

#include <string>

/// Runs the registered benchmarks as the command line says. The exit code is 1 when one of them
/// has failed or has missed a limit, so that a script sees it.
int runBenchmarks(int argc, char** argv);

/// Puts the limit of a benchmark beside its figures, and whether it was kept.
void judge(benchmark::State& state, const std::string& limit, bool kept);
