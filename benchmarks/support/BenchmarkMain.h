// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// Runs the registered benchmarks as the command line says. The exit code is 1 when one of them
/// has missed what it promises (it calls SkipWithError), so that a script sees it.
int runBenchmarks(int argc, char** argv);
