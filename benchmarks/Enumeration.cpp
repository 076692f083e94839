// SPDX-License-Identifier: BSD-3-Clause
// Measures a refresh with a growing number of cameras: time, and calls into the camera SDK. A call
// takes about a millisecond on a real camera.
#include "benchmarks/support/BenchmarkMain.h"
#include "benchmarks/support/SilencedLog.h"
#include "benchmarks/support/SimulatedCameras.h"
#include "benchmarks/support/ThreadClock.h"
#include "engine/CameraHandler.h"
#include "engine/MakeSystemController.h"
#include "engine/SystemController.h"

#include "OrvSimulation/Simulation.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>

namespace {

constexpr double growthLimit = 4.5;
constexpr int turns = 100;

/// Enumerates and answers how many cameras were found and opened.
std::size_t openedCameras(SystemController& controller) {
    std::size_t opened = 0;
    for (const CameraList& cameras : controller.enumerate())
        opened += static_cast<std::size_t>(std::count_if(
            cameras.begin(), cameras.end(), [](const auto& camera) { return camera->isOpened(); }));
    return opened;
}

void enumeration(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    const SilencedLog silence;
    const SimulatedCameras cameras(count);
    const auto controller = makeSystemController(cameras.system());
    std::size_t opened = openedCameras(*controller);
    cameras.simulation().ResetCalls();
    for (auto _ : state)
        opened = std::min(opened, openedCameras(*controller));
    const auto calls = static_cast<double>(cameras.simulation().GetCallCount());
    state.counters["calls_per_camera"] = calls / count / static_cast<double>(state.iterations());
    state.SetComplexityN(count);
    if (opened != static_cast<std::size_t>(count))
        state.SkipWithError("not every camera was opened");
}

double bestMilliseconds(int count) {
    const SimulatedCameras cameras(count);
    const auto controller = makeSystemController(cameras.system());
    openedCameras(*controller);
    double best = std::numeric_limits<double>::max();
    for (int i = 0; i < turns; ++i)
        best = std::min(best, nanosecondsOf([&controller] { openedCameras(*controller); }) / 1e6);
    return best;
}

void enumerationOf256Beside64(benchmark::State& state) {
    const SilencedLog silence;
    judgeGrowth(state, 64, 256, growthLimit, bestMilliseconds);
}

BENCHMARK(enumeration)
    ->Arg(1)
    ->Arg(16)
    ->Arg(64)
    ->Arg(256)
    ->Complexity(benchmark::oN)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(enumerationOf256Beside64)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
